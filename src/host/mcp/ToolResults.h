#pragma once

#include "host/Perform.h"
#include "platform/Failure.h"

#include <boost/json/object.hpp>

namespace tabwright::host {

/// What "tools/call" answers when the action succeeded: the result as text, once: a text as it is, other values as JSON
/// without empty fields. A file in it, such as a selection's rich text, stands as an embedded resource that the text
/// names. What would be too long is left out, and a second text says what and how to get it.
[[nodiscard]] boost::json::object succeededResult(ActionResult result);

/// What it answers when it didn't: the sentence that a user would read, and its kind as data below "_meta".
[[nodiscard]] boost::json::object failedResult(const platform::Failure& failure);

} // namespace tabwright::host
