#pragma once

#include "html/Document.h"

#include <string_view>

namespace tabwright::browserdata {

/// Parses the HTML of a page, or of a selection in one. Rows or cells that were selected within a table come without
/// the table, which the rules of HTML would make plain text of: they are given one. Throws `html::ParseFault`.
[[nodiscard]] html::Document parseFragment(std::string_view html);

} // namespace tabwright::browserdata
