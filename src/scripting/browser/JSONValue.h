#pragma once

#include "applescript/values/Value.h"

#include <boost/json/fwd.hpp>

namespace tabwright::scripting {

/// What a page's JavaScript gave, as a script sees it: text, integer, real, boolean; arrays as lists, objects as
/// records in their order, null as `missing value`.
[[nodiscard]] applescript::Value valueOf(const boost::json::value& json);

} // namespace tabwright::scripting
