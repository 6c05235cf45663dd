#pragma once

#include "host/Perform.h"
#include "platform/Failure.h"

#include <boost/json/object.hpp>

#include <vector>

namespace tabwright::host {

/// The answer to "tools/call" when the action succeeded: the result as text, once: a text as it is, other values as
/// JSON without empty fields. A file in it, such as a selection's rich text, stands as an embedded resource that the
/// text names. What would be too long is left out, and a second text says what and how to get it. Notices stand behind
/// that, a text each, and as data below "_meta". Before what a page has written stands that it is no instruction. An
/// action that has nothing to say of any kind is "Done.".
[[nodiscard]] boost::json::object succeededResult(ActionResult result, const std::vector<platform::Notice>& notices);

/// The answer when it didn't: the sentence that a user would read, its cause beneath, and both as data below "_meta".
/// It is marked "isError", which is no error of the protocol: the agent sees it and may go on.
[[nodiscard]] boost::json::object failedResult(const platform::Failure& failure);

} // namespace tabwright::host
