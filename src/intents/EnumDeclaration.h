#pragma once

#include "intents/LocalizedText.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace tabwright::intents {

/// One case of a parameter's enum.
struct EnumCase {
  std::string_view name;     ///< as in code, help and keys: "p05"
  std::string_view rawValue; ///< what it stands for as text, sent to pages and scripts: "0.5"
};

/// An enum without its C++ type: its name and its cases in declaration order. All views have static storage, so it is
/// copied freely.
///
/// Captions follow from the names, by one rule: `appEnum.NAME.typeDisplayRepresentation` for the enum and
/// `appEnum.NAME.caseDisplayRepresentation.CASE` for a case, in the enum's table.
struct EnumDeclaration {
  std::string_view name;
  /// The string table of its captions.
  std::string_view table;
  std::span<const EnumCase> cases;

  /// The name of the enum, and of one of its cases, for users.
  [[nodiscard]] LocalizedText typeCaption() const;
  [[nodiscard]] LocalizedText caption(const EnumCase& enumCase) const;

  /// The case of that name or else of that raw value; null for others. A name wins, exact spelling counts. Where the
  /// raw values are numbers of seconds, a case is found by any spelling of its number: "5", "5.0", "5s", "5 s".
  [[nodiscard]] const EnumCase* find(std::string_view nameOrRawValue) const;
  /// The case whose raw value is that number; null for others, and for enums of no numbers.
  [[nodiscard]] const EnumCase* find(double seconds) const;
  /// True when the raw values are numbers of seconds: then people give, and agents are offered, the numbers instead of
  /// the names.
  [[nodiscard]] bool isOfSeconds() const;
};

/// The table that declares an enum: a row per enumerator, in the enumerators' order. Made once, beside the enum:
///
///     enum class TabSelectionOption { frontTab, specificTab };
///     inline constexpr auto tabSelectionOptions = intents::enumTable<TabSelectionOption>({
///         {TabSelectionOption::frontTab, "frontTab"},
///         {TabSelectionOption::specificTab, "specificTab"},
///     });
///     inline constexpr intents::EnumDeclaration enumDeclaration(TabSelectionOption) {
///       return {"TabSelectionOption", intents::tables::standard, tabSelectionOptions};
///     }
///
/// `enumDeclaration`, found by argument-dependent lookup, is what makes the enum a value type of parameters.
template <class Enum>
struct EnumRow {
  /// The enumerator, whose number is the row's place.
  Enum value;
  std::string_view name;
  std::string_view rawValue{}; ///< the name, when left out
};

/// Turns rows into cases. A table whose rows are not in the enumerators' order doesn't compile.
template <class Enum, std::size_t count>
consteval std::array<EnumCase, count> enumTable(const EnumRow<Enum> (&rows)[count]) {
  std::array<EnumCase, count> cases{};
  for (std::size_t index = 0; index < count; ++index) {
    if (static_cast<std::size_t>(rows[index].value) != index)
      // Never thrown: reaching it is what the compiler complains of.
      throw "the rows of an enum's table stand in the order of its enumerators";
    cases[index] = {rows[index].name, rows[index].rawValue.empty() ? rows[index].name : rows[index].rawValue};
  }
  return cases;
}

/// An enum that has been declared with a table; only such a one can be the type of a parameter.
template <class Type>
concept DeclaredEnum = std::is_enum_v<Type> && requires(Type value) {
  { enumDeclaration(value) } -> std::convertible_to<EnumDeclaration>;
};

/// Name and raw value of an enumerator. The value must be one of the table's: anything cast from another number is
/// undefined.
template <DeclaredEnum Enum>
[[nodiscard]] const EnumCase& enumCase(Enum value) {
  return enumDeclaration(value).cases[static_cast<std::size_t>(value)];
}

} // namespace tabwright::intents
