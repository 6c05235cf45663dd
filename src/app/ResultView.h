#pragma once

#include "app/BrowserListing.h"
#include "host/Perform.h"

#include <cstddef>
#include <string>

namespace tabwright::app {

/// Columns of a table beside its items' own.
struct TableAdditions {
  TabPlaces places;        ///< tabs get columns of their windows, where there are several, and of which are shown there
  bool isNumbered = false; ///< each line begins with its number, from 1
};

/// A result for a person at a terminal of `width` cells, in the user's language; ends in a line feed unless it is
/// empty.
///
/// A list of tabs or windows is a table with a line each, in which long texts are shortened so that lines fit, except
/// for the last column, which holds what the next command needs; a column with nothing in it is left out. One tab or
/// window is a line per property. Texts stand as they are, other values as JSON. Nothing is printed for no result.
/// Characters that steer a terminal are left out of tables: they take no cells. References have the browser's short
/// name.
[[nodiscard]] std::string resultView(const host::ActionResult& result, std::size_t width,
                                     const TableAdditions& additions = {});

} // namespace tabwright::app
