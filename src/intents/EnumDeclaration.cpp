#include "intents/EnumDeclaration.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace tabwright::intents {

namespace {

std::optional<double> numberIn(std::string_view text) {
  double number = 0.0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), number);
  return failed == std::errc{} && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

// “5s” and “5 s” are “5”.
std::string_view withoutUnit(std::string_view seconds) {
  if (seconds.ends_with('s'))
    seconds.remove_suffix(1);
  return seconds.ends_with(' ') ? seconds.substr(0, seconds.size() - 1) : seconds;
}

} // namespace

LocalizedText EnumDeclaration::typeCaption() const {
  return {"appEnum." + std::string(name) + ".typeDisplayRepresentation", std::string(table)};
}

LocalizedText EnumDeclaration::caption(const EnumCase& enumCase) const {
  return {"appEnum." + std::string(name) + ".caseDisplayRepresentation." + std::string(enumCase.name),
          std::string(table)};
}

const EnumCase* EnumDeclaration::find(std::string_view nameOrRawValue) const {
  auto found = std::ranges::find(cases, nameOrRawValue, &EnumCase::name);
  if (found == cases.end())
    found = std::ranges::find(cases, nameOrRawValue, &EnumCase::rawValue);
  if (found != cases.end())
    return &*found;
  // Only numbers are left, which people write in several ways.
  const auto seconds = numberIn(withoutUnit(nameOrRawValue));
  return seconds ? find(*seconds) : nullptr;
}

const EnumCase* EnumDeclaration::find(double seconds) const {
  const auto found =
      // Compared as numbers: “0.50” is the raw value “0.5” as well.
      std::ranges::find(cases, std::optional(seconds), [](const EnumCase& one) { return numberIn(one.rawValue); });
  return found == cases.end() ? nullptr : &*found;
}

bool EnumDeclaration::isOfSeconds() const {
  return std::ranges::all_of(cases, [](const EnumCase& one) { return numberIn(one.rawValue).has_value(); });
}

} // namespace tabwright::intents
