#pragma once

#include "browserdata/pagetext/BlockLines.h"
#include "browserdata/pagetext/InlineText.h"
#include "html/Node.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tabwright::browserdata {

/// The parts of a page that a walk passes over.
enum class WalkSkips : std::uint8_t { nothing, boilerplate };

/// Walks over a page's tree and writes its text, block by block. One walk per text; the tree outlives it.
class PageTextWalk {
public:
  /// `base` is an absolute address or empty. More than `room` bytes throw `HTMLToMarkdownError::unprocessableHTML`.
  PageTextWalk(TextForm form, WalkSkips skips, std::string base, std::size_t room)
      : form_(form), skips_(skips), base_(std::move(base)), room_(room) {}

  /// The node with all that is in it.
  void add(const html::Node& node);
  /// All that was added: lines with a line feed each.
  [[nodiscard]] std::string take();

private:
  void addChildren(const html::Node& element);
  void addElement(const html::Node& element);
  void addText(const html::Node& text);
  void addMarked(const html::Node& element, InlineMark mark);
  void addBetween(const html::Node& element, std::string_view begin, std::string_view end);
  void addLink(const html::Node& link);
  void addImage(const html::Node& image);
  void addField(const html::Node& field);
  void addLineBreak();

  void addBlockOf(const html::Node& element);
  void addHeading(const html::Node& heading);
  void addPreformatted(const html::Node& pre);
  void addRule();
  void addQuote(const html::Node& quote);
  void addDefinition(const html::Node& definition);

  void addList(const html::Node& list);
  struct ListState;
  void addItem(const html::Node& item, ListState& state);

  void addTable(const html::Node& table);
  void addRowsInLine(const html::Node& table);
  [[nodiscard]] std::string cellText(const html::Node& cell);

  /// Ends the paragraph that is being collected; in a place of one line only the line.
  void endBlock();
  /// Writes a block of the text's own.
  void writeBlock(std::string_view lines);
  [[nodiscard]] bool isInLine() const { return place_ != InlinePlace::paragraph; }
  [[nodiscard]] bool isMarkdown() const { return form_ == TextForm::markdown; }
  void spend(std::size_t bytes);

  TextForm form_;
  WalkSkips skips_;
  std::string base_;
  std::size_t room_;
  BlockLines blocks_;
  InlineText line_;
  InlinePlace place_ = InlinePlace::paragraph;
  int codeDepth_ = 0;
  int itemDepth_ = 0;
  /// Places in `blocks_` by its size: where the item that is open begins, and where the last paragraph and the last
  /// list ended.
  std::size_t itemBegin_ = std::string::npos;
  std::size_t paragraphEnd_ = std::string::npos;
  std::size_t listEnd_ = std::string::npos;
  char listMark_ = '\0'; ///< of the list that ended there
  std::string taskMark_; ///< waits for the item's text
};

} // namespace tabwright::browserdata
