// List and override of one run have the same number. LibreOffice counts on through overrides of one list, whatever
// start they say, so that each run of numbers needs a list of its own. Every list declares all levels, as an item may
// stand on any of them; only the level of its run has its start.
#include "browserdata/richtext/ListTable.h"

#include "browserdata/richtext/ParagraphFormat.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tabwright::browserdata {
namespace {

struct KindFacts {
  std::string_view type; // of the element "ol"
  int numberFormat;      // \levelnfc
};

// In the order of `ListKind`.
constexpr std::array<KindFacts, 6> kinds{{{"", 23}, {"1", 0}, {"I", 1}, {"i", 2}, {"A", 3}, {"a", 4}}};

constexpr std::string_view bullet = "\\u8226?";

std::string romanNumber(int number) {
  constexpr std::array<std::pair<int, std::string_view>, 13> digits{{{1000, "m"},
                                                                     {900, "cm"},
                                                                     {500, "d"},
                                                                     {400, "cd"},
                                                                     {100, "c"},
                                                                     {90, "xc"},
                                                                     {50, "l"},
                                                                     {40, "xl"},
                                                                     {10, "x"},
                                                                     {9, "ix"},
                                                                     {5, "v"},
                                                                     {4, "iv"},
                                                                     {1, "i"}}};
  std::string result;
  for (const auto& [value, letters] : digits) {
    for (; number >= value; number -= value)
      result += letters;
  }
  return result;
}

std::string letterNumber(int number) {
  std::string result;
  // A count without a zero: "z" is followed by "aa".
  for (; number > 0; number = (number - 1) / 26)
    result.insert(result.begin(), static_cast<char>('a' + (number - 1) % 26));
  return result;
}

std::string upper(std::string text) {
  std::ranges::transform(text, text.begin(), [](char c) { return static_cast<char>(c - 'a' + 'A'); });
  return text;
}

std::string numberText(ListKind kind, int number) {
  const bool isRoman = kind == ListKind::upperRoman || kind == ListKind::lowerRoman;
  // Like browsers, which count on with digits where a notation ends.
  if (kind == ListKind::decimal || number < 1 || (isRoman && number > 3999))
    return std::to_string(number);
  const std::string text = isRoman ? romanNumber(number) : letterNumber(number);
  return kind == ListKind::upperRoman || kind == ListKind::upperLetters ? upper(text) : text;
}

void appendLevel(std::string& out, ListKind kind, int level, int start) {
  const int format = kinds.at(static_cast<std::size_t>(kind)).numberFormat;
  const int indent = (level + 1) * ParagraphFormat::indentStep;
  // Before the text of the mark stands its length, and in it the number of the level whose count goes there.
  const std::string text =
      kind == ListKind::bullets ? fmt::format("\\'01{}", bullet) : fmt::format("\\'02\\'0{}.", level);
  fmt::format_to(std::back_inserter(out),
                 "{{\\listlevel\\levelnfc{0}\\levelnfcn{0}\\leveljc0\\levelfollow0\\levelstartat{1}"
                 "{{\\leveltext{2};}}{{\\levelnumbers{3};}}\\fi-360\\li{4}\\lin{4}}}\n",
                 format, start, text, kind == ListKind::bullets ? "" : "\\'01", indent);
}

} // namespace

ListKind numberedKind(std::string_view type) {
  const auto* found =
      std::find_if(kinds.begin() + 1, kinds.end(), [&](const KindFacts& row) { return row.type == type; });
  return found == kinds.end() ? ListKind::decimal : static_cast<ListKind>(found - kinds.begin());
}

std::string markerText(ListKind kind, int number) {
  return kind == ListKind::bullets ? std::string(bullet) : numberText(kind, number) + ".";
}

int ListTable::add(ListKind kind, int level, int start) {
  auto& last = lastOfKind_.at(static_cast<std::size_t>(kind));
  if (last && (kind == ListKind::bullets || lists_.size() >= maximumLists))
    return *last;
  lists_.push_back({kind, level, start});
  last = static_cast<int>(lists_.size());
  return *last;
}

void ListTable::append(std::string& out) const {
  if (lists_.empty())
    return;
  auto end = std::back_inserter(out);
  out += "{\\*\\listtable\n";
  for (std::size_t index = 0; index < lists_.size(); ++index) {
    const List& list = lists_[index];
    fmt::format_to(end, "{{\\list\\listtemplateid{}\n", index + 1);
    for (int level = 0; level < levels; ++level)
      appendLevel(out, list.kind, level, level == list.level ? list.start : 1);
    fmt::format_to(end, "{{\\listname ;}}\\listid{}}}\n", index + 1);
  }
  // Paragraphs refer to overrides (\ls), each of which stands for the list of its number.
  out += "}\n{\\*\\listoverridetable\n";
  for (std::size_t number = 1; number <= lists_.size(); ++number)
    fmt::format_to(end, "{{\\listoverride\\listid{0}\\listoverridecount0\\ls{0}}}\n", number);
  out += "}\n";
}

} // namespace tabwright::browserdata
