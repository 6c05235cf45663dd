#pragma once

#include "devtools/Connection.h"
#include "platform/JSONReader.h"

#include <boost/json/array.hpp>

#include <string>
#include <vector>

namespace tabwright::devtools {

/// One target as the browser lists it: a page, a worker, a tab.
/// The fields are those of the protocol's Target.TargetInfo.
struct TargetInfo {
  std::string id;
  std::string type; ///< such as "page" or "service_worker"
  std::string title;
  std::string url;
  std::string context; ///< the browser context it belongs to; empty where the browser doesn't say

  /// Throws JSONMismatch where one of the first four is missing or of another type; a browser without contexts is none.
  static TargetInfo fromJSON(const platform::JSONReader& json);
};

/// The targets that pass a filter of the protocol (Target.TargetFilter); without entries the browser's usual ones.
/// Throws DevToolsFailure and JSONMismatch.
[[nodiscard]] std::vector<TargetInfo> listTargets(Connection& connection, boost::json::array filter,
                                                  const platform::CallLimits& limits);

/// Opens a page by Target.createTarget; yields its id. Throws as above.
[[nodiscard]] std::string createTarget(Connection& connection, boost::json::object parameters,
                                       const platform::CallLimits& limits);

/// The context of the ordinary profile, as told by the answer to Target.getBrowserContexts; empty where it isn't.
[[nodiscard]] std::string ordinaryContext(const PendingCall::Answer& answer);

} // namespace tabwright::devtools
