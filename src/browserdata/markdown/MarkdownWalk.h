#pragma once

#include "browserdata/markdown/MarkdownPieces.h"
#include "html/Node.h"

#include <string_view>

namespace tabwright::browserdata {

/// The surroundings of a node, as far as the rules ask about them.
struct MarkdownPlace {
  std::string_view parent = "root"; ///< tag of the nearest element around
  bool isInLink = false;
  bool isInPreformatted = false;
  int level = 0; ///< how many lists' items are around: a nested item's marker is indented by as many tabs

  /// The place of what stands directly in `element`.
  [[nodiscard]] MarkdownPlace inside(const html::Node& element) const;
};

/// The walk over a cleaned document that makes Markdown of it: a rule for each kind of node, which adds its pieces.
///
/// Goes as deep as the document, which is bounded. Throws failures of `HTMLToMarkdownError`.
class MarkdownWalk {
public:
  MarkdownWalk(MarkdownPieces& pieces, std::string_view lineSeparator, std::string_view paragraphSeparator)
      : pieces_(pieces), line_(lineSeparator), paragraph_(paragraphSeparator) {}

  /// Adds the pieces of a node and all in it.
  void add(const html::Node& node, const MarkdownPlace& place);

private:
  /// The rule of a tag, and the table that gives each tag its one; `content` for all others.
  enum class Rule : unsigned char;
  [[nodiscard]] static Rule ruleOf(std::string_view tag);

  /// Adds the nodes in an element, without empty pieces at the ends; yields the place where they begin.
  std::size_t addContent(const html::Node& element, const MarkdownPlace& place);
  /// The content between two marks of its own: "**" for what is bold.
  void addBetween(const html::Node& element, const MarkdownPlace& place, std::string_view mark);
  void addHeading(const html::Node& heading, const MarkdownPlace& place);
  void addCode(const html::Node& code, const MarkdownPlace& place);
  /// Its items only, each with its mark.
  void addList(const html::Node& list, const MarkdownPlace& place);
  bool addItem(const html::Node& item, const MarkdownPlace& place, bool isUnderItem);
  /// The indentation of the next marker, of a list at that level.
  [[nodiscard]] std::size_t tabsBeforeMarker(int level);
  void addLink(const html::Node& link, const MarkdownPlace& place);
  void addImage(const html::Node& image, const MarkdownPlace& place);
  void addAbbreviation(const html::Node& abbreviation, const MarkdownPlace& place);
  void addQuote(const html::Node& quote, const MarkdownPlace& place);
  void addAside(const html::Node& aside, const MarkdownPlace& place);
  void addTable(const html::Node& table, const MarkdownPlace& place);
  [[nodiscard]] std::string cellText(const html::Node& cell, const MarkdownPlace& place);

  /// Outlives the walk, as do the texts of the separators.
  MarkdownPieces& pieces_;
  std::string_view line_;
  std::string_view paragraph_;
  std::size_t behindMarker_ = 0; ///< the place in the pieces behind the last marker
  int levelsEnded_ = 0;          ///< how many levels of lists a block has ended, around the last marker
};

} // namespace tabwright::browserdata
