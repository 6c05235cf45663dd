#pragma once

#include <string_view>

namespace tabwright::engine {

/// The JavaScript helpers that every page job carries: eleven functions behind the text "use strict", in one line
/// without comments, made from `resources/page/pageLibrary.js` when the program is built. A script's clean-up leaves it
/// as it is.
[[nodiscard]] std::string_view pageLibrary();

/// The JavaScript that makes outlines of pages and knows elements again by references and names, in the same form. Only
/// the jobs that need it carry it, behind the library: `resources/page/` has its five files, `pageOutline(options)` and
/// `documentOfNamedElements(waits)` are what jobs call. Static storage.
[[nodiscard]] std::string_view outlineLibrary();

} // namespace tabwright::engine
