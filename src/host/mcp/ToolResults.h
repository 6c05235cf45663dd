#pragma once

#include "host/Perform.h"
#include "platform/Failure.h"

#include <boost/json/object.hpp>

namespace tabwright::host {

/// What "tools/call" answers when the action succeeded: the result as structured content, in the form of the tool's
/// output schema, and as text. A file in it, such as a selection's rich text, also stands as an embedded resource, and
/// the text names that one in place of the file's bytes.
[[nodiscard]] boost::json::object succeededResult(ActionResult result);

/// What it answers when it didn't: the sentence that a user would read, and its kind as data below "_meta".
[[nodiscard]] boost::json::object failedResult(const platform::Failure& failure);

} // namespace tabwright::host
