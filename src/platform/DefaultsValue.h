#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>

namespace tabwright::platform {

/// A stored value of a kind that no key of ours has: a list, a date, raw data, a dictionary of more than texts. It
/// stays in the store as it is. All of them are equal: nothing is known of what they hold.
struct ForeignValue {
  bool operator==(const ForeignValue&) const = default;
};

/// The value that the store of settings holds under one name. Texts are UTF-8. The alternative in use is the value's
/// type: one that replaces a value of another type is noticed by it.
using DefaultsValue =
    std::variant<ForeignValue, std::int64_t, double, bool, std::string, std::map<std::string, std::string>>;

} // namespace tabwright::platform
