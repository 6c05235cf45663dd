#pragma once

#include "applescript/values/Value.h"

#include <boost/json/fwd.hpp>

#include <utility>
#include <vector>

namespace tabwright::scripting {

/// The containers that JSON's arrays and objects become. Members come in their order.
struct JSONContainers {
  applescript::Value (*list)(std::vector<applescript::Value> items);
  applescript::Value (*record)(std::vector<std::pair<applescript::Label, applescript::Value>> members);
};

/// The language's own lists and records. Of members whose keys differ in case only, a record keeps the last.
extern const JSONContainers languageContainers;

/// JSON as a script sees it: text, integer, real, boolean, and `missing value` for null. Whole numbers beyond what an
/// integer holds become reals. Recurses as deep as the JSON is nested, which `parseJSON` bounds.
///
///     valueOf(platform::parseJSON(R"({"a": [1, null]})")) // {a:{1, missing value}}
[[nodiscard]] applescript::Value valueOf(const boost::json::value& json,
                                         const JSONContainers& containers = languageContainers);

} // namespace tabwright::scripting
