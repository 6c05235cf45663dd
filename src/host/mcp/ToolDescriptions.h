#pragma once

#include "host/Catalogue.h"

#include <boost/json/array.hpp>

#include <string_view>

namespace tabwright::host {

/// All that an agent may expect of an action before it has read its description: the tool annotations of the Model
/// Context Protocol (https://modelcontextprotocol.io, "Tools"). They are hints to people who allow tools, so they are
/// honest about the worst that a run can do.
struct ToolHints {
  std::string_view action;
  bool readsOnly = false;    ///< nothing in the browser or in a page is changed
  bool destroys = false;     ///< a run may lose something: a tab, typed text, what a page's own code does
  bool isIdempotent = false; ///< a second run with the same parameters changes nothing more
  bool isOpen = true; ///< works on pages, which anybody may have written; false for the browser's own windows and tabs
};

/// The hints of an action by its short name. Every action of the catalogue has some; others throw `std::logic_error`.
[[nodiscard]] const ToolHints& hintsOf(std::string_view action);

/// All actions as the protocol's tools: name, title, description, schema of the input, annotations. Texts are
/// in the user's language.
[[nodiscard]] boost::json::array toolDescriptions(const Catalogue& catalogue);

} // namespace tabwright::host
