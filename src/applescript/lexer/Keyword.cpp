#include "applescript/lexer/Keyword.h"

#include "applescript/terminology/FoldedWords.h"

// A table with open addressing, filled at compile time: asked for every word of a script.
namespace tabwright::applescript {

namespace {

constexpr std::size_t buckets = 512; // a power of two, above twice the number of keywords

consteval std::array<Keyword, buckets> makeIndex() {
  std::array<Keyword, buckets> index{};
  for (const KeywordRow& row : keywordTable) {
    if (row.keyword == Keyword::none)
      continue;
    std::size_t bucket = foldedHash(row.word) % buckets;
    while (index[bucket] != Keyword::none)
      bucket = (bucket + 1) % buckets;
    index[bucket] = row.keyword;
  }
  return index;
}

constexpr auto keywordIndex = makeIndex();

} // namespace

Keyword findKeyword(std::string_view word) {
  std::size_t bucket = foldedHash(word) % buckets;
  while (keywordIndex[bucket] != Keyword::none) {
    if (equalFolded(spelling(keywordIndex[bucket]), word))
      return keywordIndex[bucket];
    bucket = (bucket + 1) % buckets;
  }
  return Keyword::none;
}

} // namespace tabwright::applescript
