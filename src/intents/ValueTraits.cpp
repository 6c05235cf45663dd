// The readers of values that need no knowledge of their C++ type. Every refusal names what came and what may stand
// there.
#include "intents/ValueTraits.h"

#include "intents/EntityDeclaration.h"
#include "platform/AsciiCase.h"
#include "platform/Whitespace.h"

#include <boost/json/parse.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace tabwright::intents {

namespace {

constexpr std::string_view wholeNumber = "a whole number";

// "2.0" as people write it: "2".
std::string_view withoutZeros(std::string_view decimal) {
  if (decimal.find('.') == std::string_view::npos)
    return decimal;
  decimal = decimal.substr(0, decimal.find_last_not_of('0') + 1);
  return decimal.ends_with('.') ? decimal.substr(0, decimal.size() - 1) : decimal;
}

std::string oneOf(const EnumDeclaration& declaration) {
  const bool isOfSeconds = declaration.isOfSeconds();
  std::string choices = isOfSeconds ? "one of these seconds: " : "one of ";
  for (const EnumCase& enumCase : declaration.cases)
    choices += (enumCase.name == declaration.cases.front().name ? "" : ", ") +
               std::string(isOfSeconds ? withoutZeros(enumCase.rawValue) : enumCase.name);
  return choices;
}

} // namespace

std::string ValueTraits<std::string>::fromJson(const boost::json::value& json) {
  if (const boost::json::string* text = json.if_string())
    return std::string(*text);
  throw ValueError::unsuitable(json, "a text");
}

bool ValueTraits<bool>::fromJson(const boost::json::value& json) {
  if (const bool* value = json.if_bool())
    return *value;
  throw ValueError::unsuitable(json, "true or false");
}

bool ValueTraits<bool>::fromText(std::string_view text) {
  const auto isAnyOf = [&](const auto& words) {
    return std::ranges::any_of(words, [&](std::string_view word) { return platform::equalIgnoringCase(word, text); });
  };
  if (isAnyOf(std::array<std::string_view, 3>{"true", "yes", "1"}))
    return true;
  if (isAnyOf(std::array<std::string_view, 3>{"false", "no", "0"}))
    return false;
  throw ValueError::unsuitable(text, "true or false (yes, no, 1 and 0 will do)");
}

std::int64_t ValueTraits<std::int64_t>::fromJson(const boost::json::value& json) {
  boost::system::error_code failed;
  // Exact: 5.0 is 5, and 5.5 an error, as is what doesn't fit.
  const auto number = json.to_number<std::int64_t>(failed);
  if (failed)
    throw ValueError::unsuitable(json, wholeNumber);
  return number;
}

std::int64_t ValueTraits<std::int64_t>::fromText(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failed != std::errc{} || end != text.data() + text.size())
    throw ValueError::unsuitable(text, wholeNumber);
  return number;
}

std::size_t detail::indexOfCase(const EnumDeclaration& declaration, std::string_view nameOrRawValue) {
  if (const EnumCase* found = declaration.find(nameOrRawValue))
    return static_cast<std::size_t>(found - declaration.cases.data());
  throw ValueError::unsuitable(nameOrRawValue, oneOf(declaration));
}

std::size_t detail::indexOfCase(const EnumDeclaration& declaration, const boost::json::value& json) {
  if (const boost::json::string* text = json.if_string())
    return indexOfCase(declaration, std::string_view(*text));
  // A number is as good as its text: agents and YAML write seconds so.
  if (const EnumCase* found = json.is_number() ? declaration.find(json.to_number<double>()) : nullptr)
    return static_cast<std::size_t>(found - declaration.cases.data());
  throw ValueError::unsuitable(json, oneOf(declaration));
}

boost::json::value detail::parseValue(std::string_view text, std::string_view expected) {
  // As behind a pipe from a command that failed.
  if (platform::isBlank(text))
    throw ValueError("is empty: what should give it has given nothing. Give " + std::string(expected) + ".");
  boost::system::error_code failed;
  boost::json::value json = boost::json::parse(text, failed);
  if (failed)
    throw ValueError::unsuitable(text, expected);
  return json;
}

const boost::json::value& detail::soleValue(const boost::json::value& json, std::string_view expected) {
  const boost::json::array* list = json.if_array();
  if (!list)
    return json;
  if (list->empty())
    throw ValueError("is an empty list: what should give it has found nothing.");
  // Several would mean to choose for the caller, perhaps a tab to close.
  if (list->size() != 1)
    throw ValueError("can't be a list of " + std::to_string(list->size()) + " items; give " + std::string(expected) +
                     ".");
  return list->front();
}

void refuseUnknownProperties(const EntityDeclaration& declaration, const boost::json::object& object) {
  for (const auto& [key, value] : object) {
    // A lenient reader would drop what was misspelt without a word.
    if (!declaration.find(key))
      throw ValueError(fmt::format("has no property “{}” as a {}; its properties are {}.", std::string_view(key),
                                   declaration.name, fmt::join(declaration.propertyNames(), ", ")));
  }
}

} // namespace tabwright::intents
