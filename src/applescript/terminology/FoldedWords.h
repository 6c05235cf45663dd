#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_set>

/// Words compared as the language compares them: ignoring the case of ASCII letters, which is all that dictionaries
/// use. Words are UTF-8; bytes outside of ASCII only equal themselves. Names of scripts are folded beyond ASCII by the
/// lexer, which gives all uses of one name its first spelling.
namespace tabwright::applescript {

/// A byte in lower case when it is an ASCII capital; any other as it is. Never depends on the locale.
[[nodiscard]] constexpr char foldedLetter(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

[[nodiscard]] constexpr bool equalFolded(std::string_view left, std::string_view right) {
  if (left.size() != right.size())
    return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (foldedLetter(left[i]) != foldedLetter(right[i]))
      return false;
  }
  return true;
}

/// FNV-1a over the folded letters: equal for words that `equalFolded` finds equal.
[[nodiscard]] constexpr std::size_t foldedHash(std::string_view word) {
  std::uint64_t hash = 14695981039346656037u;
  for (const char letter : word)
    hash = (hash ^ static_cast<unsigned char>(foldedLetter(letter))) * 1099511628211u;
  return static_cast<std::size_t>(hash);
}

/// For tables of words: hash and equality that look words up in any case without making a folded copy.
struct FoldedHash {
  std::size_t operator()(std::string_view word) const { return foldedHash(word); }
};
struct FoldedEqual {
  bool operator()(std::string_view left, std::string_view right) const { return equalFolded(left, right); }
};
/// Views only: the words must outlive the set.
using FoldedNames = std::unordered_set<std::string_view, FoldedHash, FoldedEqual>;

} // namespace tabwright::applescript
