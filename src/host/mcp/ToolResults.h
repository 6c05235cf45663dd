#pragma once

#include "host/Perform.h"
#include "platform/Failure.h"

#include <boost/json/object.hpp>

#include <vector>

namespace tabwright::host {

/// What "tools/call" answers when the action succeeded: the result as structured content, in the form of the tool's
/// output schema, and as text. A file in it, such as a selection's rich text, also stands as an embedded resource, and
/// the text names that one in place of the file's bytes.
[[nodiscard]] boost::json::object succeededResult(ActionResult result);

/// The same result with what the caller should know beside it: a line of text each, and the data below "_meta".
[[nodiscard]] boost::json::object withNotices(const std::vector<platform::Notice>& notices, boost::json::object result);

/// What it answers when it didn't: the sentence that a user would read, its cause beneath, and both as data below
/// "_meta".
[[nodiscard]] boost::json::object failedResult(const platform::Failure& failure);

} // namespace tabwright::host
