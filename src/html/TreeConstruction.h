#pragma once

#include "html/Tokenizer.h"
#include "html/TreeBuilder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::html {

/// Builds the tree of a page by the HTML standard's section 13.2.6, "Tree construction".
///
/// It goes without most of the standard's insertion modes: inside tables the innermost open element of a table's
/// structure tells which rules count, and what needs no tree (scripts, style sheets, templates, embedded documents) is
/// passed over where it begins.
///
/// `Document` says where this leaves the standard. No step walks further than over `Document::maximumDepth` open
/// elements or `maximumFormatting` formatting ones, so the whole takes time in proportion to the page.
class TreeConstruction {
public:
  /// All must outlive it.
  TreeConstruction(std::string_view page, Arena& texts, Arena& nodes);

  /// The root, once; it lives in the arenas. Throws `ParseFault`.
  const NodeRecord& run();

private:
  /// They only go forward. `inFrameset` is the end of all content: a page of frames has no body.
  enum class Phase { initial, beforeHead, inHead, afterHead, inBody, inFrameset };
  /// A place for a node: in `parent`, before one of its children.
  struct Place {
    Element* parent;
    Element* before; // null: behind all children
    friend bool operator==(const Place&, const Place&) = default;
  };
  /// Entries in the list of active formatting elements, markers included.
  static constexpr std::size_t maximumFormatting = 64;
  static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

  // TreeConstruction.cpp: what comes before the body, and elements whose content is no markup
  /// Gives a token to the rules that hold where the tree is at.
  void take(const Token& token);
  bool startBeforeBody(const Token& token);
  void endBeforeBody(const Token& token);
  /// Opens the body, whether the page has a tag for it or not.
  void enterBody(std::span<const Attribute> attributes = {});
  void takeUnmarked(const Token& token);
  /// Passes over a template and those in it, up to its end tag.
  void skipTemplate();

  // BodyConstruction.cpp: the body
  /// White space before the body is dropped; any other text begins it.
  void takeText(std::string_view text);
  void start(const Token& token);
  void end(const Token& token);
  /// The rules of the body itself, when those of tables and foreign content are done with.
  void startInBody(const Token& token);
  void endInBody(const Token& token);
  void endForm();
  void closeItem(Tag tag, Tag other);
  void closeParagraph() { closeInScope(tag_p, tag_button); }
  void endAny(const Token& token);

  // TableConstruction.cpp
  [[nodiscard]] static bool isStructure(const Element& element);
  [[nodiscard]] bool isInTable() const { return current().structure && isStructure(*current().structure); }
  /// For the tags of a table's structure alone.
  void startInTable(const Token& token);
  void endInTable(Tag tag);

  // ForeignConstruction.cpp: drawings and formulas
  [[nodiscard]] bool belongsToForeign(const Token& token) const;
  /// The rules for a token within a drawing or a formula.
  void takeForeign(const Token& token);
  void leaveForeign();

  // FormattingConstruction.cpp
  /// Opens again what was closed by a block without an end tag of its own.
  void reconstructFormatting();
  /// The end of a formatting element, be it nested rightly or not.
  void endFormatting(const Token& token);
  bool adopt(Tag tag);
  void addFormatting(Element* element);
  /// Forgets formatting up to the last marker, and that too.
  void clearToMarker();
  [[nodiscard]] Element* lastFormatting(Tag tag) const;
  void eraseFormatting(std::size_t place) {
    formatting_.erase(formatting_.begin() + static_cast<std::ptrdiff_t>(place));
  }

  // OpenElements.cpp: the stack of open elements, and the places of nodes
  [[nodiscard]] Element& current() const { return *stack_.back(); }
  [[nodiscard]] std::size_t find(Tag tag, unsigned bounds, Tag bound = tag_html, Tag anotherBound = tag_html) const;
  /// True when an end tag here would reach an open element of that tag.
  [[nodiscard]] bool isInScope(Tag tag) const { return find(tag, boundsScope) != nowhere; }
  /// Closes the innermost one with all that is in it; false where none is in scope.
  bool closeInScope(Tag tag, Tag bound = tag_html, Tag anotherBound = tag_html);
  /// Closes the element at that position of the stack, and all above it.
  void closeThrough(std::size_t position);
  /// Closes elements whose end tags may be missing.
  void closeImplied(Tag except = tag_unknown);
  /// The last place of the element in a list; `nowhere` when it isn't there. Searched from the end, where it mostly is.
  [[nodiscard]] static std::size_t placeOf(const std::vector<Element*>& elements, const Element& element);
  Element& insertElement(std::string_view name, TagTraits tag, std::span<const Attribute> attributes);
  /// The others make the element and end here. All put it into the place that the current element gives, and open it
  /// unless it is void.
  Element& insertElement(Element& element);
  Element& insertElement(Tag tag);
  Element& insertElement(const Token& token);
  /// Opens an element that stands in the tree.
  void push(Element& element);
  void pop();
  /// Takes an element off the stack and leaves those above it open.
  void takeOut(std::size_t position);
  /// Marks an element as open, in the table's structure that is given.
  void open(Element& element, Element* structure);
  /// Opens the copy in the element's place of the stack's accounts; the stack itself is the caller's.
  void replace(Element& element, Element& copy);
  [[nodiscard]] Place placeIn(Element& target) const;
  /// Collects text, which becomes a node with `flushText`.
  void insertText(std::string_view text);
  void flushText();

  Tokenizer tokenizer_;
  Arena& texts_;
  TreeBuilder tree_;
  std::vector<Element*> stack_;
  std::array<std::uint16_t, tag_unknown + 1> open_{}; // of each tag on the stack
  std::vector<Element*> formatting_;                  // the list of active formatting elements; null is a marker
  Element* head_ = nullptr;
  /// The last form whose end tag hasn't come: no other one begins before that.
  Element* form_ = nullptr;
  Phase phase_ = Phase::initial;
  /// No doctype came: tables may stand in paragraphs.
  bool isQuirky_ = true;
  /// Insertions go before the table rather than into its structure.
  bool isFostering_ = false;
  /// The next text's first line feed is none of the page's.
  bool skipsLineFeed_ = false;
  std::size_t budget_; // of formatting elements that may be opened again
  std::string room_;
  std::string text_; // that is yet to go to `textPlace_`
  Place textPlace_{};
};

} // namespace tabwright::html
