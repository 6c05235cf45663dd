#pragma once

#include "scripting/driver/BrowserDriver.h"

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::scripting {

/// Every generated program asks the front tab for the browser's version before it ends, by one fixed expression that
/// looks at nothing but `navigator`. Every page gives it the same answer, and the browser has told that answer when it
/// was connected to: so it is given from there. That spares a call of a page, and an action on one tab doesn't fail
/// because another one, in front, has crashed or shows a dialog.
///
/// Yields the major version as text, such as "156". Nothing for any other JavaScript, and where the browser has told no
/// version.
[[nodiscard]] std::optional<std::string> answerToVersionQuestion(std::string_view javascript,
                                                                 const BrowserSnapshot& browser);

} // namespace tabwright::scripting
