// Boundaries come from ICU's break iterators over the UTF-8 text itself, so that offsets are bytes throughout. Texts of
// ASCII without CR, of which each byte is a character, never get that far.
#include "applescript/values/TextElements.h"

#include "applescript/values/Errors.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>

namespace tabwright::applescript {

namespace {

enum class Boundary { characters, words };

// Calls `range(offset, length, status)` for each piece of the text.
template <class Report>
void eachPiece(Boundary boundary, const std::string& text, Report report) {
  // Opening one is slow, and two threads can't share one.
  static thread_local std::unique_ptr<icu::BreakIterator> iterators[2];
  UErrorCode status = U_ZERO_ERROR;
  auto& iterator = iterators[boundary == Boundary::words ? 1 : 0];
  if (!iterator) {
    iterator.reset(boundary == Boundary::words
                       ? icu::BreakIterator::createWordInstance(icu::Locale::getRoot(), status)
                       : icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  }
  UText source = UTEXT_INITIALIZER;
  utext_openUTF8(&source, text.data(), static_cast<int64_t>(text.size()), &status);
  if (U_SUCCESS(status))
    iterator->setText(&source, status);
  if (U_FAILURE(status)) {
    utext_close(&source);
    // One that failed is opened anew the next time.
    iterator.reset();
    throw errors::outOfMemory();
  }
  std::size_t start = 0;
  iterator->first();
  for (int32_t next = iterator->next(); next != icu::BreakIterator::DONE; next = iterator->next()) {
    const auto end = static_cast<std::size_t>(next);
    report(TextRange{start, end - start}, iterator->getRuleStatus());
    start = end;
  }
  // The iterator still points there, but gets another text before it is used again.
  utext_close(&source);
}

bool isSingleBytes(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80 && c != '\r'; });
}

} // namespace

std::vector<TextRange> paragraphsOf(const std::string& text) {
  std::vector<TextRange> paragraphs;
  std::size_t start = 0;
  const auto endsAt = [&](std::size_t at) -> std::size_t {
    if (text[at] == '\n')
      return 1;
    if (text[at] == '\r')
      return text.compare(at, 2, "\r\n") == 0 ? 2 : 1;
    // The line and paragraph separators of Unicode, which both begin with this byte.
    if (text[at] == '\xE2' && (text.compare(at, 3, "\u2028") == 0 || text.compare(at, 3, "\u2029") == 0))
      return 3;
    return 0;
  };
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = endsAt(at);
    if (length > 0) {
      paragraphs.push_back({start, at - start});
      start = at + length;
    }
    at += std::max<std::size_t>(length, 1);
  }
  if (!text.empty())
    paragraphs.push_back({start, text.size() - start});
  return paragraphs;
}

std::vector<TextRange> wordsOf(const std::string& text) {
  std::vector<TextRange> words;
  eachPiece(Boundary::words, text, [&](TextRange piece, int32_t status) {
    // Below that are blanks and punctuation.
    if (status >= UBRK_WORD_NONE_LIMIT)
      words.push_back(piece);
  });
  return words;
}

std::vector<TextRange> charactersOf(const std::string& text) {
  std::vector<TextRange> characters;
  if (isSingleBytes(text)) {
    characters.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at)
      characters.push_back({at, 1});
    return characters;
  }
  eachPiece(Boundary::characters, text, [&](TextRange piece, int32_t) { characters.push_back(piece); });
  return characters;
}

std::vector<TextRange> textItemsOf(const std::string& text, const std::vector<std::string>& delimiters,
                                   const TextAttributes& attributes) {
  std::vector<TextRange> items;
  if (text.empty())
    return items;
  // `text item delimiters` of "" take a text apart into its characters.
  if (std::ranges::all_of(delimiters, &std::string::empty))
    return charactersOf(text);
  // Of several delimiters the one that comes next counts, and of those at one place the first given. Each is searched
  // for again only once the text has been split beyond its last place.
  struct Wanted {
    const std::string* delimiter;
    std::optional<TextMatch> next;
  };
  TextSearch search(text, attributes);
  std::vector<Wanted> searches;
  for (const std::string& delimiter : delimiters) {
    if (!delimiter.empty())
      searches.push_back({&delimiter, search.find(delimiter, 0)});
  }
  std::size_t start = 0;
  for (;;) {
    std::optional<TextMatch> first;
    for (Wanted& each : searches) {
      if (each.next && each.next->offset < start)
        each.next = search.find(*each.delimiter, start);
      if (each.next && (!first || each.next->offset < first->offset))
        first = each.next;
    }
    if (!first)
      break;
    items.push_back({start, first->offset - start});
    start = first->offset + first->length;
  }
  items.push_back({start, text.size() - start});
  return items;
}

const std::vector<TextRange>& PieceIndex::pieces(const Text& text, Kind kind) {
  return pieces(text, kind, {}, {});
}

const std::vector<TextRange>& PieceIndex::pieces(const Text& text, Kind kind, std::vector<std::string> delimiters,
                                                 const TextAttributes& attributes) {
  Entry& entry = entries_[static_cast<std::size_t>(kind)];
  if (entry.isKnown && entry.text.isSameObject(text) && entry.delimiters == delimiters &&
      entry.attributes == attributes)
    return entry.ranges;
  // An exception on the way leaves nothing that looks known.
  entry.isKnown = false;
  switch (kind) {
  case Kind::characters:
    entry.ranges = charactersOf(text.utf8());
    break;
  case Kind::words:
    entry.ranges = wordsOf(text.utf8());
    break;
  case Kind::paragraphs:
    entry.ranges = paragraphsOf(text.utf8());
    break;
  case Kind::textItems:
    entry.ranges = textItemsOf(text.utf8(), delimiters, attributes);
    break;
  }
  // The copy keeps the text from being appended to where it is (Text::appendUnshared), so that its pieces stay true.
  entry.text = text;
  entry.delimiters = std::move(delimiters);
  entry.attributes = attributes;
  entry.isKnown = true;
  return entry.ranges;
}

void CharacterIndex::prepare(const Text& text) {
  if (isPrepared_ && text_.isSameObject(text))
    return;
  // A copy, which also keeps the text from being appended to where it is.
  text_ = text;
  isPrepared_ = true;
  boundaries_.clear();
  const std::string& utf8 = text.utf8();
  isSingleBytes_ = isSingleBytes(utf8);
  if (isSingleBytes_)
    return;
  eachPiece(Boundary::characters, utf8, [&](TextRange piece, int32_t) { boundaries_.push_back(piece.offset); });
  boundaries_.push_back(utf8.size());
}

std::size_t CharacterIndex::count(const Text& text) {
  prepare(text);
  return isSingleBytes_ ? text.utf8().size() : boundaries_.size() - 1;
}

TextRange CharacterIndex::character(const Text& text, std::size_t position) {
  prepare(text);
  if (isSingleBytes_)
    return {position, 1};
  return {boundaries_[position], boundaries_[position + 1] - boundaries_[position]};
}

std::size_t CharacterIndex::charactersBefore(const Text& text, std::size_t offset) {
  prepare(text);
  if (isSingleBytes_)
    return offset;
  return static_cast<std::size_t>(std::ranges::lower_bound(boundaries_, offset) - boundaries_.begin());
}

} // namespace tabwright::applescript
