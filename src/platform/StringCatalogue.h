#pragma once

#include <deque>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::platform {

/// The table of keys that name none.
inline constexpr std::string_view defaultStringTable = "Localizable";

/// The texts shown to users, by table and key, in the user's language.
///
/// Catalogues are the files `resources/strings/<language>/<table>.json`, each a flat JSON object from key to text; they
/// are embedded when the program is built. A key is looked up in the user's languages in order, then in English; a key
/// found nowhere is its own text, so English sentences may serve as keys.
///
/// Safe to use from any thread. A table is read when it is first asked for.
class StringCatalogue {
public:
  /// One catalogue file. The views must outlive the catalogue.
  struct Source {
    std::string_view language; ///< such as "en", "de" or "pt_BR"
    std::string_view table;
    std::string_view json;
  };

  /// `languages` come in order of preference; English is tried last whether it is named or not.
  StringCatalogue(std::span<const Source> sources, std::span<const std::string> languages);
  ~StringCatalogue();
  StringCatalogue(const StringCatalogue&) = delete;
  StringCatalogue& operator=(const StringCatalogue&) = delete;

  /// The text of `key`, or the key itself. Never fails: a broken catalogue counts as empty and is logged once.
  [[nodiscard]] std::string localized(std::string_view key, std::string_view table = defaultStringTable) const;

  /// The localized text of `key` with each "%@" replaced, in order, by the next of `arguments`, and each "%1$@",
  /// "%2$@"… by the argument of that number. "%%" is a percent sign. A placeholder without an argument stays as it is.
  [[nodiscard]] std::string localizedFormat(std::string_view key, std::initializer_list<std::string_view> arguments,
                                            std::string_view table = defaultStringTable) const;

  /// The embedded catalogues in the language of the process's environment.
  [[nodiscard]] static const StringCatalogue& shared();
  /// The same in English, which commands speak.
  [[nodiscard]] static const StringCatalogue& english();

private:
  /// A source, and its texts once it was asked for.
  struct Table;
  mutable std::deque<Table> tables_; // in the order of the lookup
};

/// The languages that the environment asks for, best first: the value of the first variable set among LC_ALL,
/// LC_MESSAGES and LANG, without its encoding, and then without its region: "de_AT.UTF-8" gives "de_AT" and "de". "C"
/// and "POSIX" give none.
[[nodiscard]] std::vector<std::string> languagesOfEnvironment();

/// `StringCatalogue::shared().localized(key, table)`.
[[nodiscard]] std::string localized(std::string_view key, std::string_view table = defaultStringTable);

/// `StringCatalogue::shared().localizedFormat(key, arguments, table)`.
[[nodiscard]] std::string localizedFormat(std::string_view key, std::initializer_list<std::string_view> arguments,
                                          std::string_view table = defaultStringTable);

} // namespace tabwright::platform
