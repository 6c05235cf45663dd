#pragma once

#include "host/Catalogue.h"
#include "host/ParameterReader.h"
#include "intents/ActionHost.h"
#include "intents/ValueType.h"
#include "platform/Task.h"

#include <boost/json/value.hpp>

#include <string>
#include <vector>

namespace tabwright::host {

/// The value that an action gave back.
struct ActionResult {
  boost::json::value value; ///< null for nothing
  /// As the action declares it; the value has its shape.
  intents::ValueType type;
  bool isWrittenByPage = false; ///< as the action's hints say
};

/// Runs one action: finds it, fills its parameters, checks that none is missing, performs it. Every road of a user's
/// ends here: the command line, the background host, workflows, agents.
///
///     const ActionResult tabs = co_await perform(catalogue, "GetListOfTabs", ParameterTexts{}, user);
///
/// Throws `intents::UsageError` for a wrong name or value and `intents::NeedsValue` for a missing one, both before
/// anything has been run; else the action's own failure. `catalogue` and `host` outlive the run. Cancelling stops its
/// script. Safe to call from any thread, several runs at once.
platform::Task<ActionResult> perform(const Catalogue& catalogue, std::string name, ParameterValues parameters,
                                     intents::ActionHost& host);

/// The finished program of the same run, byte for byte as it would be written to the script file, without touching a
/// browser. Throws as `perform` does before it runs anything, and `UsageError` for an action without a program and for
/// the frontmost browser as the target.
[[nodiscard]] std::string scriptText(const Catalogue& catalogue, std::string_view name,
                                     const ParameterValues& parameters);

/// A result as lines for a person: none for nothing, one for a value, one per item of a list. Entities are shown by
/// their display text; a text stands as it is, line feeds included.
[[nodiscard]] std::vector<std::string> linesOf(const ActionResult& result);

} // namespace tabwright::host
