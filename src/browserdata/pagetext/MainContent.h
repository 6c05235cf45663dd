#pragma once

#include "html/Node.h"

#include <optional>

namespace tabwright::browserdata {

/// The element of a page that holds what the page is there for, by these rules, the first that fits:
///
///  1. the only shown `main`, or the only element of that role, when it holds a quarter of the page's prose or more;
///  2. the only shown `article`, when it holds half of it or more;
///  3. the innermost element that holds four fifths of the page's prose.
///
/// Prose is the text of paragraphs, items, cells and the like, counted in bytes: a block of them counts when it is at
/// least 25 long and at most half of it stands in links; code always counts. Boilerplate (`isBoilerplate`) holds none.
/// Nothing for a page with less than 140 bytes of prose: there is nothing to be told apart. Time in proportion to the
/// page.
[[nodiscard]] std::optional<html::Node> mainContent(const html::Node& root);

/// True for an element that is a page's frame rather than its content: navigation, a page's header or footer, what
/// stands aside, a form for searching; by its name, its role, or a class or id that says so, such as “sidebar”.
[[nodiscard]] bool isBoilerplate(const html::Node& element);

} // namespace tabwright::browserdata
