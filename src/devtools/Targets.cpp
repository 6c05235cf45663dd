#include "devtools/Targets.h"

#include <utility>

namespace tabwright::devtools {

using platform::JSONReader;

TargetInfo TargetInfo::fromJSON(const JSONReader& json) {
  return {.id = json.require<std::string>("targetId"),
          .type = json.require<std::string>("type"),
          .title = json.require<std::string>("title"),
          .url = json.require<std::string>("url"),
          .context = json.find<std::string>("browserContextId").value_or("")};
}

std::vector<TargetInfo> listTargets(Connection& connection, boost::json::array filter,
                                    const platform::CallLimits& limits) {
  boost::json::object parameters;
  if (!filter.empty())
    parameters["filter"] = std::move(filter);
  const boost::json::value reply = connection.call("Target.getTargets", std::move(parameters), {}, limits);
  return JSONReader(reply).require<std::vector<TargetInfo>>("targetInfos");
}

std::string createTarget(Connection& connection, boost::json::object parameters, const platform::CallLimits& limits) {
  const boost::json::value reply = connection.call("Target.createTarget", std::move(parameters), {}, limits);
  return JSONReader(reply).require<std::string>("targetId");
}

std::string ordinaryContext(const PendingCall::Answer& answer) {
  return answer ? JSONReader(*answer).find<std::string>("defaultBrowserContextId").value_or("") : std::string();
}

} // namespace tabwright::devtools
