#pragma once

#include "host/Catalogue.h"

#include <boost/json/array.hpp>

namespace tabwright::host {

/// All actions as tools of the Model Context Protocol, in the catalogue's order: name, title, description, schema of
/// the input, annotations. Shorter than help and `inputSchema`, as an agent holds all of them in its memory: parameters
/// that another one says in fewer words are left out, and are taken all the same. Texts are in the user's language.
[[nodiscard]] boost::json::array toolDescriptions(const Catalogue& catalogue);

} // namespace tabwright::host
