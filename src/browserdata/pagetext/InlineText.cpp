// Collecting keeps the page's order and its blanks. Writing goes over the pieces in steps: blanks and breaks leave the
// marks that they stand at the edge of, marks around nothing go, equal ones that touch become one (`settled`); then the
// marks are chosen and the text escaped, which InlineMarkup.cpp does.
#include "browserdata/pagetext/InlineText.h"

#include "browserdata/pagetext/InlineMarkup.h"
#include "platform/Whitespace.h"

#include <algorithm>
#include <utility>

namespace tabwright::browserdata {

namespace {

using Kind = InlinePiece::Kind;
using Pieces = std::vector<InlinePiece>;

bool isSpace(const InlinePiece& piece) {
  return piece.kind == Kind::lineBreak ||
         ((piece.kind == Kind::text || piece.kind == Kind::code) && platform::isBlank(piece.text));
}

bool isLineBreak(const InlinePiece& piece) {
  return piece.kind == Kind::lineBreak;
}

// White space, the text without it, white space.
void addInThree(Pieces& pieces, InlinePiece piece) {
  const std::string text = std::move(piece.text);
  const std::string_view trimmed = platform::trimmingWhitespaceAndNewlines(text);
  const auto begin = static_cast<std::size_t>(trimmed.data() - text.data());
  if (trimmed.empty()) {
    pieces.push_back({.text = text});
    return;
  }
  if (begin > 0)
    pieces.push_back({.text = text.substr(0, begin)});
  piece.text = trimmed;
  pieces.push_back(std::move(piece));
  if (const std::size_t end = begin + trimmed.size(); end < text.size())
    pieces.push_back({.text = text.substr(end)});
}

class Settling {
public:
  explicit Settling(std::size_t count) { settled_.reserve(count + 8); }

  void add(InlinePiece piece) {
    if (isSpace(piece)) {
      // Before the marks that wait for content. One break behind another would be text.
      if (piece.kind != Kind::lineBreak || std::none_of(spaceAtEnd(), settled_.end(), isLineBreak))
        settled_.push_back(std::move(piece));
    } else if (piece.kind == Kind::open)
      waiting_.push_back(std::move(piece));
    else if (piece.kind == Kind::close)
      close(std::move(piece));
    else {
      begin();
      settled_.push_back(std::move(piece));
    }
  }

  Pieces finished() {
    while (!settled_.empty() && isSpace(settled_.back()))
      settled_.pop_back();
    const auto first = std::ranges::find_if_not(settled_, isSpace);
    settled_.erase(settled_.begin(), first);
    return std::move(settled_);
  }

private:
  void begin() {
    for (InlinePiece& mark : waiting_) {
      const bool goesOn = mark.mark != InlineMark::link && !settled_.empty() && settled_.back().kind == Kind::close &&
                          settled_.back().mark == mark.mark;
      if (goesOn)
        settled_.pop_back();
      else
        settled_.push_back(std::move(mark));
    }
    waiting_.clear();
  }

  void close(InlinePiece mark) {
    if (!waiting_.empty()) {
      waiting_.pop_back(); // around nothing
      return;
    }
    settled_.insert(spaceAtEnd(), std::move(mark));
  }

  Pieces::iterator spaceAtEnd() {
    auto space = settled_.end();
    while (space != settled_.begin() && isSpace(*std::prev(space)))
      --space;
    return space;
  }

  Pieces settled_;
  Pieces waiting_;
};

Pieces settled(Pieces pieces) {
  Settling settling(pieces.size());
  for (InlinePiece& piece : pieces) {
    if (piece.kind != Kind::text && piece.kind != Kind::code) {
      settling.add(std::move(piece));
      continue;
    }
    Pieces parts;
    addInThree(parts, std::move(piece));
    for (InlinePiece& part : parts)
      settling.add(std::move(part));
  }
  return settling.finished();
}

} // namespace

void InlineText::add(InlinePiece::Kind kind, std::string_view collapsed) {
  if (endsInBlank_ && collapsed.starts_with(' '))
    collapsed.remove_prefix(1);
  if (collapsed.empty())
    return;
  endsInBlank_ = collapsed.ends_with(' ');
  hasContent_ |= !platform::isBlank(collapsed);
  if (!pieces_.empty() && pieces_.back().kind == kind)
    pieces_.back().text += collapsed;
  else
    pieces_.push_back({.kind = kind, .text = std::string(collapsed)});
}

void InlineText::addLineBreak() {
  pieces_.push_back({.kind = Kind::lineBreak});
  endsInBlank_ = true;
}

void InlineText::addImage(std::string_view alternative, std::string address, std::string_view title) {
  pieces_.push_back({.kind = Kind::image,
                     .text = std::string(platform::trimmingWhitespaceAndNewlines(alternative)),
                     .address = std::move(address),
                     .title = std::string(title)});
  endsInBlank_ = false;
  hasContent_ = true;
}

void InlineText::addMarkup(std::string_view markup) {
  pieces_.push_back({.kind = Kind::markup, .text = std::string(markup)});
}

bool InlineText::open(InlineMark mark, std::string address, std::string_view title) {
  if (std::ranges::any_of(open_, [&](const OpenMark& one) { return one.mark == mark; }))
    return false;
  open_.push_back({mark, std::move(address), std::string(title)});
  begin(open_.back());
  return true;
}

void InlineText::begin(const OpenMark& mark) {
  pieces_.push_back({.kind = Kind::open, .mark = mark.mark, .address = mark.address, .title = mark.title});
}

void InlineText::close(InlineMark mark) {
  open_.pop_back();
  pieces_.push_back({.kind = Kind::close, .mark = mark});
}

bool InlineText::endsInBreak() const {
  return !pieces_.empty() && pieces_.back().kind == Kind::lineBreak;
}

bool InlineText::isInLink() const {
  return std::ranges::any_of(open_, [](const OpenMark& one) { return one.mark == InlineMark::link; });
}

std::string InlineText::take(InlinePlace place, TextForm form) {
  std::string text;
  if (hasContent_) {
    for (auto mark = open_.rbegin(); mark != open_.rend(); ++mark)
      pieces_.push_back({.kind = Kind::close, .mark = mark->mark});
    text = form == TextForm::markdown ? inlineMarkdown(settled(std::move(pieces_)), place)
                                      : inlinePlainText(settled(std::move(pieces_)), place);
  }
  pieces_.clear();
  for (const OpenMark& mark : open_)
    begin(mark);
  endsInBlank_ = true;
  hasContent_ = false;
  return text;
}

} // namespace tabwright::browserdata
