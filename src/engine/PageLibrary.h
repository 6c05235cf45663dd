#pragma once

#include <string_view>

namespace tabwright::engine {

/// The JavaScript helpers that every page job carries: eleven functions behind the text "use strict", in one line
/// without comments, made from `resources/page/pageLibrary.js` when the program is built. A script's clean-up leaves it
/// as it is.
[[nodiscard]] std::string_view pageLibrary();

} // namespace tabwright::engine
