#pragma once

#include "host/Catalogue.h"

#include <boost/json/array.hpp>

namespace tabwright::host {

/// All actions as the protocol's tools: name, title, description, schema of the input, annotations. Texts are
/// in the user's language.
[[nodiscard]] boost::json::array toolDescriptions(const Catalogue& catalogue);

} // namespace tabwright::host
