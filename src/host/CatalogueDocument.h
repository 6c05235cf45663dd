#pragma once

#include "host/Catalogue.h"

#include <string>

namespace tabwright::host {

/// The reference of all actions as one Markdown document, from their declarations: a section per kind of action, and
/// per action what it does, a table of its parameters, its choices, its result and examples. In the user's language.
/// The same on every machine if the catalogue's choices are, so that a test can hold the document in docs/ against it.
/// CommonMark with tables; ends in a line feed.
[[nodiscard]] std::string catalogueDocument(const Catalogue& catalogue);

} // namespace tabwright::host
