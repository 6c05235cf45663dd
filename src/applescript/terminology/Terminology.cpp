#include "applescript/terminology/Terminology.h"

#include <algorithm>
#include <cassert>
#include <functional>
#include <utility>

// Terms are found by their first word, which nearly always settles that there is none; the few entries that share a
// first word are then tried from the longest to the shortest. An entry holds the terms of all kinds that have the same
// words, since the parser alone can tell by what follows which of them is meant.
namespace tabwright::applescript {

namespace {

std::vector<std::string_view> splitWords(std::string_view words) {
  std::vector<std::string_view> parts;
  while (!words.empty()) {
    const auto blank = words.find(' ');
    parts.push_back(words.substr(0, blank));
    words = blank == std::string_view::npos ? std::string_view() : words.substr(blank + 1);
  }
  return parts;
}

bool beginsWith(std::span<const std::string_view> words, std::span<const std::string_view> start) {
  return words.size() >= start.size() && std::equal(start.begin(), start.end(), words.begin(), equalFolded);
}

} // namespace

Terminology::Terminology(std::string name, std::span<const Term> rows) : name_(std::move(name)), rows_(rows) {
  for (const Term& term : rows_) {
    add(term.words, term, false);
    // A plural that is the singular would be a second reading of the same words.
    if (!term.plural.empty() && !equalFolded(term.plural, term.words))
      add(term.plural, term, true);
  }
  for (auto& [word, entries] : byFirstWord_) {
    std::ranges::sort(entries, std::greater(), [](const Entry& entry) { return entry.words.size(); });
  }
}

void Terminology::add(std::string_view words, const Term& term, bool isPlural) {
  auto parts = splitWords(words);
  assert(!parts.empty());
  auto& entries = byFirstWord_[parts.front()];
  auto entry = std::ranges::find_if(entries, [&](const Entry& candidate) {
    return candidate.words.size() == parts.size() && beginsWith(candidate.words, parts);
  });
  if (entry == entries.end())
    entry = entries.insert(entries.end(), Entry{std::move(parts), {}});
  // One reading per kind: the same words for two codes of a kind would leave the choice to the table's order.
  assert(std::ranges::none_of(entry->matches, [&](const Match& other) {
    return other.term->kind == term.kind && (other.term->code != term.code || other.term->event != term.event);
  }));
  entry->matches.push_back({&term, isPlural, entry->words.size()});
}

std::span<const Terminology::Match> Terminology::longestMatch(std::span<const std::string_view> words) const {
  if (words.empty())
    return {};
  const auto found = byFirstWord_.find(words.front());
  if (found == byFirstWord_.end())
    return {};
  // The longest come first.
  for (const Entry& entry : found->second) {
    if (beginsWith(words, entry.words))
      return entry.matches;
  }
  return {};
}

bool Terminology::hasFirstWord(std::string_view word) const {
  return byFirstWord_.contains(word);
}

const Term* Terminology::findCode(Term::Kind kind, FourCharCode code) const {
  const auto found = std::ranges::find_if(
      rows_, [&](const Term& term) { return term.kind == kind && kind != Term::Kind::command && term.code == code; });
  return found == rows_.end() ? nullptr : &*found;
}

const Term* Terminology::findCommand(EventCode event) const {
  const auto found = std::ranges::find_if(
      rows_, [&](const Term& term) { return term.kind == Term::Kind::command && term.event == event; });
  return found == rows_.end() ? nullptr : &*found;
}

} // namespace tabwright::applescript
