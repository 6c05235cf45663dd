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
  enum class Phase { initial, beforeHead, inHead, afterHead, inBody, inFrameset };
  struct Place {
    Element* parent;
    Element* before; // null: behind all children
    friend bool operator==(const Place&, const Place&) = default;
  };
  static constexpr std::size_t maximumFormatting = 64;
  static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

  // TreeConstruction.cpp: what comes before the body, and elements whose content is no markup
  void take(const Token& token);
  bool startBeforeBody(const Token& token);
  void endBeforeBody(const Token& token);
  void enterBody(std::span<const Attribute> attributes = {});
  void takeUnmarked(const Token& token);
  void skipTemplate();

  // BodyConstruction.cpp: the body
  void takeText(std::string_view text);
  void start(const Token& token);
  void end(const Token& token);
  void startInBody(const Token& token);
  void endInBody(const Token& token);
  void endForm();
  void closeItem(Tag tag, Tag other);
  void closeParagraph() { closeInScope(tag_p, tag_button); }
  void endAny(const Token& token);

  // TableConstruction.cpp
  [[nodiscard]] static bool isStructure(const Element& element);
  [[nodiscard]] bool isInTable() const { return current().structure && isStructure(*current().structure); }
  void startInTable(const Token& token);
  void endInTable(Tag tag);

  // ForeignConstruction.cpp: drawings and formulas
  [[nodiscard]] bool belongsToForeign(const Token& token) const;
  void takeForeign(const Token& token);
  void leaveForeign();

  // FormattingConstruction.cpp
  void reconstructFormatting();
  void endFormatting(const Token& token);
  bool adopt(Tag tag);
  void addFormatting(Element* element);
  void clearToMarker();
  [[nodiscard]] Element* lastFormatting(Tag tag) const;
  void eraseFormatting(std::size_t place) {
    formatting_.erase(formatting_.begin() + static_cast<std::ptrdiff_t>(place));
  }

  // OpenElements.cpp: the stack of open elements, and the places of nodes
  [[nodiscard]] Element& current() const { return *stack_.back(); }
  [[nodiscard]] std::size_t find(Tag tag, unsigned bounds, Tag bound = tag_html, Tag anotherBound = tag_html) const;
  [[nodiscard]] bool isInScope(Tag tag) const { return find(tag, boundsScope) != nowhere; }
  bool closeInScope(Tag tag, Tag bound = tag_html, Tag anotherBound = tag_html);
  void closeThrough(std::size_t position);
  void closeImplied(Tag except = tag_unknown);
  [[nodiscard]] static std::size_t placeOf(const std::vector<Element*>& elements, const Element& element);
  Element& insertElement(std::string_view name, TagTraits tag, std::span<const Attribute> attributes);
  Element& insertElement(Element& element);
  Element& insertElement(Tag tag);
  Element& insertElement(const Token& token);
  void push(Element& element);
  void pop();
  void takeOut(std::size_t position);
  void open(Element& element, Element* structure);
  void replace(Element& element, Element& copy);
  [[nodiscard]] Place placeIn(Element& target) const;
  void insertText(std::string_view text);
  void flushText();

  Tokenizer tokenizer_;
  Arena& texts_;
  TreeBuilder tree_;
  std::vector<Element*> stack_;
  std::array<std::uint16_t, tag_unknown + 1> open_{}; // of each tag on the stack
  std::vector<Element*> formatting_;                  // the list of active formatting elements; null is a marker
  Element* head_ = nullptr;
  Element* form_ = nullptr;
  Phase phase_ = Phase::initial;
  bool isQuirky_ = true;
  bool isFostering_ = false;
  bool skipsLineFeed_ = false;
  std::size_t budget_; // of formatting elements that may be opened again
  std::string room_;
  std::string text_; // that is yet to go to `textPlace_`
  Place textPlace_{};
};

} // namespace tabwright::html
