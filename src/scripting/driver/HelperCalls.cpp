// A fault of the helper's is one of the driver's own by its name; all others are refusals, in the helper's words. What
// becomes of a page during a call is told as the protocol tells it. The helper says which kind of thing is missing; the
// id is the one that it was called with.
#include "scripting/driver/HelperCalls.h"

#include "devtools/DevToolsFault.h"
#include "platform/JSONReader.h"
#include "scripting/driver/DriverFault.h"

#include <boost/json/serialize.hpp>

#include <optional>
#include <string>
#include <utility>

namespace tabwright::scripting {

boost::json::value valueOfHelper(boost::json::value answer, const boost::json::object& parameters) {
  const platform::JSONReader fields(answer, "helper");
  const auto fault = fields.find<std::string>("fault");
  if (!fault && fields.object().contains("value"))
    return std::move(answer.at("value"));
  const auto subject = [&](std::string_view key) {
    const boost::json::value* id = parameters.if_contains(key);
    return id != nullptr ? boost::json::serialize(*id) : std::string();
  };
  if (fault == "noSuchTab")
    throw platform::failure(DriverFault::noSuchTab, subject("tab"));
  if (fault == "noSuchWindow")
    throw platform::failure(DriverFault::noSuchWindow, subject("window"));
  if (fault == "tabClosed")
    throw platform::failure(devtools::DevToolsFault::targetGone);
  if (fault == "tabCrashed")
    throw platform::failure(devtools::DevToolsFault::targetCrashed);
  auto detail = fields.require<std::string>("detail");
  while (detail.ends_with('.')) // the sentence around it has its own
    detail.pop_back();
  if (fault == "scriptsNotAllowed")
    throw platform::failure(DriverFault::scriptsNotAllowed, detail);
  throw platform::failure(DriverFault::refused, detail);
}

} // namespace tabwright::scripting
