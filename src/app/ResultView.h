#pragma once

#include "host/Perform.h"

#include <cstddef>
#include <string>

namespace tabwright::app {

/// A result for a person at a terminal of `width` cells, in the user's language; ends in a line feed unless it is
/// empty.
///
/// A list of tabs or windows is a table with a line each, in which long texts are shortened so that lines fit, except
/// for the last column, which holds what the next command needs; a column with nothing in it is left out. One tab or
/// window is a line per property. Texts stand as they are, other values as JSON. Nothing is printed for no result.
/// Characters that steer a terminal are left out: pages choose their titles.
[[nodiscard]] std::string resultView(const host::ActionResult& result, std::size_t width);

/// The width of the terminal on standard output; 80 when it can't be told.
[[nodiscard]] std::size_t terminalWidth();

} // namespace tabwright::app
