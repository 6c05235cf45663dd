// Marks are chosen first, by the characters that will stand beside them: CommonMark reads a run of marks by whether
// white space or punctuation is on its sides. A mark that is left out changes what is beside others, so choosing goes
// on until nothing changes. Then all is written from left to right.
#include "browserdata/pagetext/InlineMarkup.h"

#include "browserdata/pagetext/MarkdownEscapes.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tabwright::browserdata {

namespace {

using Kind = InlinePiece::Kind;

// Beside a mark: behind more of them, all without a character of their own, a mark is left out.
constexpr int mostPassedOver = 64;

bool isEmphasis(const InlinePiece& piece) {
  return (piece.kind == Kind::open || piece.kind == Kind::close) && piece.mark != InlineMark::link;
}

bool isLink(const InlinePiece& piece, Kind end) {
  return piece.kind == end && piece.mark == InlineMark::link;
}

bool isSpaceOrPunctuation(char32_t character) {
  return isSpaceOrEnd(character) || isSurelyPunctuation(character);
}

class MarkChoice {
public:
  MarkChoice(const std::vector<InlinePiece>& pieces, InlinePlace place) : pieces_(pieces), place_(place) {
    marks_.resize(pieces.size());
    std::vector<std::size_t> open;
    for (std::size_t index = 0; index < pieces.size(); ++index) {
      if (pieces[index].kind == Kind::open)
        open.push_back(index);
      if (pieces[index].kind != Kind::close)
        continue;
      if (pieces[index].mark != InlineMark::link)
        pairs_.emplace_back(open.back(), index);
      open.pop_back();
    }
    for (const auto& [begin, end] : pairs_)
      marks_[begin] = marks_[end] = pieces[begin].mark == InlineMark::deletion ? "~~"
                                    : pieces[begin].mark == InlineMark::strong ? "**"
                                                                               : "_";
  }

  /// For each piece the mark that is written for it: none for those left out, and for what is no emphasis.
  std::vector<std::string_view> chosen() {
    constexpr int mostRounds = 8;
    bool hasChanged = true;
    for (int round = 0; hasChanged; ++round) {
      hasChanged = false;
      for (const auto& [begin, end] : pairs_) {
        const std::string_view mark = round < mostRounds ? markOf(begin, end) : std::string_view();
        hasChanged |= mark != marks_[begin];
        marks_[begin] = marks_[end] = mark;
      }
    }
    return std::move(marks_);
  }

private:
  // GitHub's parser looks through tildes at what is beside a mark, others count them as punctuation: a mark is chosen
  // so that both read it.
  enum class Tildes : bool { areSeen, areSeenThrough };

  // From “_” to “*” to none, never back: so the rounds end.
  [[nodiscard]] std::string_view markOf(std::size_t begin, std::size_t end) const {
    std::string_view mark = marks_[begin];
    const char32_t before = characterBefore(begin, Tildes::areSeenThrough);
    const char32_t first = characterBehind(begin, Tildes::areSeen);
    const char32_t last = characterBefore(end, Tildes::areSeen);
    const char32_t behind = characterBehind(end, Tildes::areSeenThrough);
    const bool isAfterBreak = isSpaceOrPunctuation(before);
    const bool isBeforeBreak = isSpaceOrPunctuation(behind);
    if (mark == "_" && !(isAfterBreak && isBeforeBreak))
      mark = "*";
    const bool opens = !isSpaceOrEnd(first) && (isSurelyOfAWord(first) || isAfterBreak) &&
                       !isSpaceOrEnd(characterBehind(begin, Tildes::areSeenThrough));
    const bool closes = !isSpaceOrEnd(last) && (isSurelyOfAWord(last) || isBeforeBreak) &&
                        !isSpaceOrEnd(characterBefore(end, Tildes::areSeenThrough));
    // Together with others of its kind a mark would be read otherwise; “_” can't be beside one, as it has none in
    // words.
    const std::array<char32_t, 4> beside{characterBefore(begin, Tildes::areSeen), first, last,
                                         characterBehind(end, Tildes::areSeen)};
    const bool isMerged = !mark.empty() && std::ranges::find(beside, mark.front()) != beside.end();
    return opens && closes && !isMerged ? mark : std::string_view();
  }

  [[nodiscard]] char32_t characterBefore(std::size_t index, Tildes tildes) const {
    for (int passed = 0; index-- > 0 && passed < mostPassedOver; ++passed) {
      if (isPassedOver(index, tildes))
        continue;
      std::string_view text = pieces_[index].text;
      while (tildes == Tildes::areSeenThrough && text.ends_with('~'))
        text.remove_suffix(1);
      return edge(index, lastCharacter(text), ")>");
    }
    return 0;
  }
  [[nodiscard]] char32_t characterBehind(std::size_t index, Tildes tildes) const {
    ++index;
    for (int passed = 0; index < pieces_.size() && passed < mostPassedOver; ++index, ++passed) {
      if (isPassedOver(index, tildes))
        continue;
      std::string_view text = pieces_[index].text;
      while (tildes == Tildes::areSeenThrough && text.starts_with('~'))
        text.remove_prefix(1);
      return edge(index, firstCharacter(text), "!<");
    }
    return 0;
  }
  [[nodiscard]] bool isPassedOver(std::size_t index, Tildes tildes) const {
    const InlinePiece& piece = pieces_[index];
    if (isEmphasis(piece))
      return marks_[index].empty() || (tildes == Tildes::areSeenThrough && piece.mark == InlineMark::deletion);
    return tildes == Tildes::areSeenThrough && piece.kind == Kind::text && !piece.text.empty() &&
           piece.text.find_first_not_of('~') == std::string::npos;
  }

  // The character at an edge of what is written for a piece: of its text, of an image, of markup.
  [[nodiscard]] char32_t edge(std::size_t index, char32_t ofText, std::string_view ofImageAndMarkup) const {
    const InlinePiece& piece = pieces_[index];
    switch (piece.kind) {
    case Kind::text:
      return ofText == '*' || ofText == '_' ? U'\\' : ofText; // there it is escaped
    case Kind::code:
      return '`';
    case Kind::lineBreak:
      return place_ == InlinePlace::cell ? static_cast<char32_t>(ofImageAndMarkup[1]) : U'\0';
    case Kind::image:
      return static_cast<char32_t>(ofImageAndMarkup[0]);
    case Kind::markup:
      return static_cast<char32_t>(ofImageAndMarkup[1]);
    case Kind::open:
    case Kind::close:
      return isEmphasis(piece) ? static_cast<char32_t>(marks_[index].front()) : piece.kind == Kind::open ? U'[' : U')';
    }
    return 0;
  }

  const std::vector<InlinePiece>& pieces_;
  InlinePlace place_;
  std::vector<std::string_view> marks_;
  std::vector<std::pair<std::size_t, std::size_t>> pairs_;
};

// An address that its text says already: “<https://x.test/>”.
bool saysItsAddress(std::string_view text, std::string_view address) {
  return text == address && (address.starts_with("http://") || address.starts_with("https://")) &&
         address.find_first_of(" <>|&\\") == std::string_view::npos;
}

class MarkdownLine {
public:
  MarkdownLine(std::vector<InlinePiece> pieces, InlinePlace place) : place_(place) {
    const std::vector<std::string_view> marks = MarkChoice(pieces, place).chosen();
    for (std::size_t index = 0; index < pieces.size(); ++index) {
      InlinePiece& piece = pieces[index];
      if (isEmphasis(piece)) {
        if (marks[index].empty())
          continue;
        piece.text = marks[index];
      }
      // The bar that ends a cell can't follow a backslash in code.
      if (piece.kind == Kind::code && place == InlinePlace::cell && piece.text.contains("\\|"))
        piece.kind = Kind::text;
      if (!pieces_.empty() && pieces_.back().kind == piece.kind &&
          (piece.kind == Kind::text || piece.kind == Kind::code))
        pieces_.back().text += piece.text;
      else
        pieces_.push_back(std::move(piece));
    }
    count();
  }

  std::string written() {
    for (index_ = 0; index_ < pieces_.size(); ++index_)
      write(pieces_[index_]);
    return std::move(out_);
  }

private:
  void count() {
    const auto runs = [](std::string_view text, char mark) {
      std::size_t count = 0;
      for (std::size_t at = text.find(mark); at < text.size(); at = text.find(mark, at)) {
        const std::size_t end = std::min(text.find_first_not_of(mark, at), text.size());
        // Between blanks, which stay inside of a text, it neither begins nor ends emphasis.
        const bool standsAlone = at > 1 && text[at - 1] == ' ' && end + 1 < text.size() && text[end] == ' ';
        count += standsAlone && mark != '`' ? 0 : 1;
        at = end;
      }
      return count;
    };
    for (const InlinePiece& piece : pieces_) {
      // Also an escaped one ends the code that one before it begins.
      counts_.backticks += piece.kind == Kind::code ? 2 : runs(piece.title, '`');
      if (piece.kind == Kind::image)
        counts_.backticks += runs(piece.text, '`');
      if (piece.kind != Kind::text && !isEmphasis(piece))
        continue;
      counts_.backticks += runs(piece.text, '`');
      counts_.asterisks += runs(piece.text, '*');
      counts_.underscores += runs(piece.text, '_');
      counts_.tildes += runs(piece.text, '~');
    }
  }

  void write(const InlinePiece& piece) {
    switch (piece.kind) {
    case Kind::text:
      return writeText(piece.text);
    case Kind::code:
      out_ += codeSpan(piece.text, isInCell());
      return;
    case Kind::lineBreak:
      return writeBreak();
    case Kind::image:
      out_ += "![" + alternative(piece.text) + "](" + escapedAddress(piece.address, isInCell()) +
              quotedTitle(piece.title, isInCell()) + ")";
      return;
    case Kind::markup:
      out_ += piece.text;
      return;
    case Kind::open:
    case Kind::close:
      if (isEmphasis(piece))
        out_ += piece.text;
      else if (piece.kind == Kind::open)
        openLink(piece);
      else
        closeLink();
      return;
    }
  }

  void openLink(const InlinePiece& piece) {
    const bool isShort = index_ + 2 < pieces_.size() && pieces_[index_ + 1].kind == Kind::text &&
                         isLink(pieces_[index_ + 2], Kind::close) && piece.title.empty() &&
                         saysItsAddress(pieces_[index_ + 1].text, piece.address);
    if (isShort) {
      out_ += "<" + piece.address + ">";
      index_ += 2;
      return;
    }
    link_ = &piece;
    out_ += '[';
  }

  void closeLink() {
    out_ += "](" + escapedAddress(link_->address, isInCell()) + quotedTitle(link_->title, isInCell()) + ")";
    link_ = nullptr;
  }

  void writeBreak() {
    while (out_.ends_with(' '))
      out_.pop_back();
    out_ += place_ == InlinePlace::cell ? "<br>" : place_ == InlinePlace::heading ? " " : paragraphBreak();
    isFirstLine_ = false;
  }

  // A backslash would become a part of an address that GitHub links.
  [[nodiscard]] std::string_view paragraphBreak() const {
    const std::size_t word = out_.find_last_of(" \n");
    return mayBeLinked(std::string_view(out_).substr(word == std::string::npos ? 0 : word + 1)) ? "  \n" : "\\\n";
  }

  void writeText(std::string_view text) {
    const bool isBehindBreak = index_ > 0 && pieces_[index_ - 1].kind == Kind::lineBreak;
    const bool isAtBegin = index_ == 0 || isBehindBreak;
    if (isAtBegin)
      text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const bool isBeforeBreak = index_ + 1 < pieces_.size() && pieces_[index_ + 1].kind == Kind::lineBreak;
    const bool isAtEnd = index_ + 1 == pieces_.size() || isBeforeBreak;
    if (isAtEnd)
      text = text.substr(0, text.find_last_not_of(' ') + 1);
    const char32_t before = isAtBegin ? U'\0' : lastCharacter(out_);
    const char32_t breakMark = isInCell() ? U'<' : place_ == InlinePlace::heading ? U'\0' : U'\\';
    const char32_t after = isBeforeBreak ? breakMark : isAtEnd ? U'\0' : beginOf(pieces_[index_ + 1]);
    const EscapeContext context{.counts = counts_,
                                .before = isBehindBreak && isInCell() ? U'>' : before,
                                .after = after,
                                .isBeforeLink = !isAtEnd && isLink(pieces_[index_ + 1], Kind::open),
                                .isInBrackets = link_ != nullptr,
                                .isInCell = isInCell(),
                                .beginsLine = isAtBegin && place_ == InlinePlace::paragraph,
                                .endsLine = isAtEnd,
                                .isFirstLine = isFirstLine_};
    out_ += escapedText(text, context);
  }

  static char32_t beginOf(const InlinePiece& piece) {
    switch (piece.kind) {
    case Kind::code:
      return '`';
    case Kind::image:
      return '!';
    case Kind::markup:
      return '<';
    case Kind::open:
    case Kind::close:
      return isEmphasis(piece) ? firstCharacter(piece.text) : piece.kind == Kind::open ? U'[' : U']';
    default:
      return 0;
    }
  }

  // All marks in it count as one of two: it stands in brackets of its own.
  [[nodiscard]] std::string alternative(std::string_view text) const {
    return escapedText(text, {.counts = {2, 2, 2, 2}, .isInBrackets = true, .isInCell = isInCell()});
  }

  [[nodiscard]] bool isInCell() const { return place_ == InlinePlace::cell; }

  InlinePlace place_;
  std::vector<InlinePiece> pieces_;
  MarkCounts counts_;
  std::string out_;
  std::size_t index_ = 0;
  const InlinePiece* link_ = nullptr;
  bool isFirstLine_ = true;
};

} // namespace

std::string inlineMarkdown(std::vector<InlinePiece> pieces, InlinePlace place) {
  std::string line = MarkdownLine(std::move(pieces), place).written();
  if (place == InlinePlace::heading && line.ends_with('#')) {
    // Marks at the end of a heading belong to its own, unless they belong to a word.
    const std::size_t before = line.find_last_not_of('#');
    if (before == std::string::npos || line[before] == ' ')
      line.insert(line.size() - 1, 1, '\\');
  }
  return line;
}

std::string inlinePlainText(const std::vector<InlinePiece>& pieces, InlinePlace place) {
  std::string line;
  for (const InlinePiece& piece : pieces) {
    if (piece.kind == Kind::text || piece.kind == Kind::code || piece.kind == Kind::image)
      line += piece.text;
    if (piece.kind != Kind::lineBreak)
      continue;
    while (line.ends_with(' '))
      line.pop_back();
    line += place == InlinePlace::paragraph ? '\n' : ' ';
  }
  return line;
}

} // namespace tabwright::browserdata
