#pragma once

#include "intents/ValueType.h"

#include <boost/json/value.hpp>

#include <functional>

namespace tabwright::host {

/// Calls `found` with every file in an action's result, for it to be replaced. The walk goes by the declared types:
/// what looks like a file in a text of a page is none. A null is no file; `value` has the shape of `type`, as results
/// of actions do.
void forEachFile(boost::json::value& value, intents::ValueType type,
                 const std::function<void(boost::json::value& file)>& found);

} // namespace tabwright::host
