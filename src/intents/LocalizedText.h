#pragma once

#include <string>
#include <string_view>

namespace tabwright::intents {

/// Names of the string tables; each is a file of resources/strings/LANGUAGE/.
namespace tables {
inline constexpr std::string_view general = "Intents";
inline constexpr std::string_view webPages = "Intents-Web Pages";
inline constexpr std::string_view browserTabs = "Intents-Browser Tabs";
inline constexpr std::string_view browserWindows = "Intents-Browser Windows";
inline constexpr std::string_view browsers = "Intents-Browsers";
inline constexpr std::string_view enums = "Skeleton-Enums";
inline constexpr std::string_view standard = "Localizable"; ///< of texts whose declaration names no table
} // namespace tables

/// A text shown to users, named by its key and the table that holds its wording in each language.
///
/// A plain sentence may stand as the key itself, in the standard table: it is then its own English wording.
struct LocalizedText {
  std::string key;
  std::string table{tables::standard};

  /// The wording in the user's language, else in English; the key itself when no table has one. Looked up at each call;
  /// never fails. From any thread.
  [[nodiscard]] std::string text() const;

  friend bool operator==(const LocalizedText&, const LocalizedText&) = default;
};

} // namespace tabwright::intents
