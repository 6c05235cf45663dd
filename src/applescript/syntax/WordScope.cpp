// Words are matched at nearly every token, so nothing is allocated for it: the next words go into a buffer of eight,
// more than any term has, and the matches into a value of fixed size. Each dictionary is asked for its longest term; a
// longer one throws out those found so far, an equally long one is added behind them, and so the order of asking is the
// order of preference.
#include "applescript/syntax/WordScope.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace tabwright::applescript {

const Terminology::Match* TermMatches::find(Term::Kind kind) const {
  const auto* found = std::find_if(begin(), end(), [kind](const auto& match) { return match.term->kind == kind; });
  return found == end() ? nullptr : found;
}

void TermMatches::add(std::span<const Terminology::Match> matches) {
  const std::size_t room = std::min(matches.size(), matches_.size() - size_);
  std::copy_n(matches.begin(), room, matches_.begin() + static_cast<std::ptrdiff_t>(size_));
  size_ += room;
}

WordScope::WordScope() {
  enterBody();
}

void WordScope::enterTell(const Terminology* terminology) {
  layers_.push_back({terminology, true});
  ++tells_;
}

void WordScope::enterOwnTell() {
  layers_.push_back({nullptr, false});
}

void WordScope::leaveTell() {
  if (layers_.back().isForeign)
    --tells_;
  layers_.pop_back();
}

void WordScope::use(const Terminology& terminology) {
  used_.push_back(&terminology);
}

void WordScope::startLine(std::vector<const Terminology*> mentioned) {
  mentioned_ = std::move(mentioned);
}

bool WordScope::isBound(std::string_view name) const {
  return std::ranges::any_of(names_, [&](const FoldedNames& names) { return names.contains(name); });
}

TermMatches WordScope::match(std::span<const Token> tokens) const {
  std::array<std::string_view, 8> buffer;
  std::size_t count = 0;
  // Quoted names are no words: a name in bars is never a dictionary's.
  while (count < std::min(buffer.size(), tokens.size()) && tokens[count].kind == Token::Kind::word) {
    buffer[count] = tokens[count].text;
    ++count;
  }
  const std::span<const std::string_view> words(buffer.data(), count);
  TermMatches found;
  const auto ask = [&](const Terminology& terminology) {
    const auto matches = terminology.longestMatch(words);
    if (matches.empty() || (!found.empty() && matches.front().words < found.front().words))
      return;
    if (!found.empty() && matches.front().words > found.front().words)
      found.clear();
    found.add(matches);
  };

  const Terminology* last = nullptr; // nested tells to one application have the same dictionary
  for (const Layer& layer : std::views::reverse(layers_)) {
    if (layer.terminology && layer.terminology != last) {
      ask(*layer.terminology);
      last = layer.terminology;
    }
  }
  for (const Terminology* terminology : used_)
    ask(*terminology);
  ask(languageTerminology());
  for (const Terminology* terminology : mentioned_)
    ask(*terminology);

  // Once all have been asked: a longer term of another dictionary may begin with the reserved word.
  if (!found.empty() && found.front().words == 1 && isReserved(tokens.front().keyword))
    found.clear();
  return found;
}

std::optional<Terminology::Match> WordScope::match(std::span<const Token> tokens, Term::Kind kind) const {
  const TermMatches matches = match(tokens);
  const Terminology::Match* found = matches.find(kind);
  return found ? std::optional(*found) : std::nullopt;
}

const Term* WordScope::findCommand(EventCode event) const {
  for (const Layer& layer : std::views::reverse(layers_)) {
    if (const Term* term = layer.terminology ? layer.terminology->findCommand(event) : nullptr)
      return term;
  }
  return languageTerminology().findCommand(event);
}

} // namespace tabwright::applescript
