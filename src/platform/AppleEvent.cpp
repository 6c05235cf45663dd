// Readers look at the one alternative they are made for, plus the coercions that the header names; all else is neutral.
// A descriptor stands for an event interface that has no errors, so what can't be coerced is the neutral value and
// never an exception; a script that returns something else than was agreed is found out by those who decode results.
#include "platform/AppleEvent.h"

#include <fmt/core.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

namespace tabwright::platform {
namespace {

std::int32_t truncated(double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  // A cast of what doesn't fit is undefined.
  if (std::isnan(value))
    return 0;
  if (value <= Limits::min())
    return Limits::min();
  if (value >= Limits::max())
    return Limits::max();
  return static_cast<std::int32_t>(value);
}

std::int32_t wholeNumberOf(const std::string& text) {
  std::int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  // The whole text has to be the number, so that “3 tabs” isn't 3.
  return error == std::errc() && stop == end ? number : 0;
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\')
      result += '\\';
    result += c;
  }
  return result += '"';
}

} // namespace

void AppleEventDescriptor::append(AppleEventDescriptor item) {
  std::get<List>(value_).push_back(std::move(item));
}

std::size_t AppleEventDescriptor::numberOfItems() const {
  const List* items = std::get_if<List>(&value_);
  return items ? items->size() : 0;
}

std::optional<AppleEventDescriptor> AppleEventDescriptor::descriptorAtIndex(std::size_t index) const {
  const List* items = std::get_if<List>(&value_);
  if (!items || index == 0 || index > items->size())
    return std::nullopt;
  return (*items)[index - 1];
}

bool AppleEventDescriptor::booleanValue() const {
  if (const bool* value = std::get_if<bool>(&value_))
    return *value;
  if (const std::int32_t* value = std::get_if<std::int32_t>(&value_))
    return *value != 0;
  if (const double* value = std::get_if<double>(&value_))
    return *value != 0;
  return false;
}

std::int32_t AppleEventDescriptor::int32Value() const {
  if (const std::int32_t* value = std::get_if<std::int32_t>(&value_))
    return *value;
  if (const double* value = std::get_if<double>(&value_))
    return truncated(*value);
  if (const std::string* value = std::get_if<std::string>(&value_))
    return wholeNumberOf(*value);
  return 0;
}

std::optional<std::string> AppleEventDescriptor::stringValue() const {
  const std::string* value = std::get_if<std::string>(&value_);
  return value ? std::optional(*value) : std::nullopt;
}

std::string AppleEventDescriptor::description() const {
  return std::visit(
      [](const auto& value) -> std::string {
        using Type = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<Type, std::monostate>) {
          return "null";
        } else if constexpr (std::is_same_v<Type, std::string>) {
          return quoted(value);
        } else if constexpr (std::is_same_v<Type, Other>) {
          return value.description;
        } else if constexpr (std::is_same_v<Type, List>) {
          std::string text = "{";
          for (const AppleEventDescriptor& item : value)
            text += (text.size() > 1 ? ", " : "") + item.description();
          return text += '}';
        } else {
          // Booleans, whole numbers and reals, which the library writes as short as they can be read back.
          return fmt::format("{}", value);
        }
      },
      value_);
}

} // namespace tabwright::platform
