#pragma once

#include "html/TagTraits.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabwright::html {

/// A tag as the account of open elements sees it.
struct SeenTag {
  int id;
  unsigned traits;
  std::string_view name;  ///< in lower case
  std::size_t length = 0; ///< bytes of its markup, which copies of a formatting element repeat
  [[nodiscard]] bool has(unsigned wanted) const { return (traits & wanted) != 0; }
};

/// An account of the elements that a tree builder has open while it reads a page, by the rules of the HTML standard's
/// tree construction as far as they open and close elements: the stack of open elements, the list of active formatting
/// elements with its markers, implied end tags, scopes, the structure of tables, misnested formatting.
///
/// It may believe more open than is, never less, so a bound on it is a bound on the tree.
class OpenElements {
public:
  /// `length` is the page's, which the budget for repeated formatting follows.
  explicit OpenElements(std::size_t length) : budget_(10'000 + std::min<std::size_t>(length / 4, 1'000'000)) {}

  /// The tag of a name in lower case, which must outlive the tag.
  [[nodiscard]] SeenTag tag(std::string_view name, std::size_t length);

  /// Whether a start tag fits the bounds as things are; else it is to be left out, and `leaveOut` to be called.
  [[nodiscard]] bool hasRoomFor(const SeenTag& tag) const;
  void leaveOut(const SeenTag& tag);
  /// Whether an end tag belongs to a start tag that was left out, and is to be left out, too.
  [[nodiscard]] bool closesLeftOut(const SeenTag& tag);

  /// A start tag, an end tag, and text go to the tree.
  void start(const SeenTag& tag);
  void end(const SeenTag& tag);
  void text() { reconstructFormatting(); }

  /// End tags for the formatting that the next text would open again, once that has happened too often; they have been
  /// accounted for. Empty before.
  [[nodiscard]] std::string endExpensiveFormatting();

  [[nodiscard]] bool isInSelect() const { return openSelects_ > 0; }

private:
  struct Entry { // of the stack
    int id;
    unsigned traits;
    unsigned serial;
  };
  struct Format { // of the list of active formatting elements
    int id;       // `marker` for a marker
    unsigned serial;
    bool isOpen; // on the stack, too
    std::size_t cost;
    std::string name;
  };
  static constexpr int marker = -1;
  static constexpr std::ptrdiff_t maximumSameFormats = 3; // the standard's own for those that are alike
  static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

  [[nodiscard]] std::size_t find(int id, unsigned bounds, int furtherBound = -1, int anotherBound = -1) const;
  void closeInScope(int id, int furtherBound = -1, int anotherBound = -1);
  void closeThrough(std::size_t position);
  void closeItem(int id, int otherId);
  void startInTable(const SeenTag& tag);
  void endInTable(int id);
  void endOther(int id);
  void endFormatting(int id);
  bool adopt(int id);
  std::size_t cloneBetween(std::size_t formatting, std::size_t furthestBlock, std::size_t bookmark);
  void reconstructFormatting();
  void clearToMarker();
  void forgetFormatting(int id);
  [[nodiscard]] std::size_t lastFormat(int id) const;
  [[nodiscard]] std::size_t formatOf(unsigned serial) const;
  [[nodiscard]] std::size_t positionOf(unsigned serial) const;
  void push(int id, unsigned traits);
  void pop();
  void spend(std::size_t cost) { budget_ -= budget_ < cost ? budget_ : cost; }
  [[nodiscard]] bool topIs(int id) const { return !stack_.empty() && stack_.back().id == id; }

  std::vector<Entry> stack_;
  std::vector<Format> formats_;
  unsigned lastSerial_ = 0;
  std::vector<int> leftOut_;
  std::unordered_map<int, std::size_t> leftOutCounts_;
  std::unordered_map<std::string, int> furtherIds_;
  std::size_t openParagraphs_ = 0;
  std::size_t openSelects_ = 0;
  std::size_t budget_;
};

} // namespace tabwright::html
