#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::browserdata {

/// The markers of a list's items.
enum class ListKind : std::uint8_t { bullets, decimal, upperRoman, lowerRoman, upperLetters, lowerLetters };

/// The kind that the attribute "type" of a numbered list names; decimal for any other value.
[[nodiscard]] ListKind numberedKind(std::string_view type);

/// The mark of one item.
/// Kept until its paragraph is written, which may be after the item's first element was entered.
struct ListMarker {
  int list;         ///< its number in the `ListTable`
  int level;        ///< 0 to 8
  std::string text; ///< as Rich Text Format, for readers that know no lists
};

/// The marker of an item as text: "4.", "iv." or a bullet.
[[nodiscard]] std::string markerText(ListKind kind, int number);

/// The lists that the paragraphs of a document refer to, each with a definition of all levels.
///
/// All bullets are one list. Each run of numbers is one, too: that begins a new count in word processors.
class ListTable {
public:
  static constexpr int levels = 9;
  static constexpr int maximumNumber = 32767;
  /// That word processors take; beyond them, numbers go on where the last list of their kind stopped.
  static constexpr std::size_t maximumLists = 2000;

  /// The number of the list for items that count on from `start` (0 to `maximumNumber`) at a level.
  [[nodiscard]] int add(ListKind kind, int level, int start);

  /// Appends the tables of lists and their overrides; nothing when there are none.
  void append(std::string& out) const;

private:
  /// One run of numbers, or the one list of all bullets.
  struct List {
    ListKind kind;
    /// Of the run's items, from 0; `start` is the number of the first.
    int level;
    int start;
  };
  std::vector<List> lists_;
  std::array<std::optional<int>, 6> lastOfKind_; // by kind
};

} // namespace tabwright::browserdata
