#include "applescript/SyntaxDictionaries.h"
#include "applescript/terminology/Terminology.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace tabwright::applescript::test {
namespace {

TEST(TerminologyTest, FindsTheLongestTermInAnyCase) {
  const Terminology& chrome = *SyntaxDictionaries().terminologyByName("Google Chrome");
  const std::vector<std::string_view> words = {"Active", "TAB", "index", "of"};
  const auto matches = chrome.longestMatch(words);
  ASSERT_EQ(matches.size(), 1u);
  EXPECT_EQ(matches[0].term->words, "active tab index");
  EXPECT_EQ(matches[0].words, 3u);
  EXPECT_EQ(chrome.longestMatch(std::span(words).first(2))[0].term->words, "active tab");
  EXPECT_TRUE(chrome.longestMatch(std::span(words).first(1)).empty());
  EXPECT_TRUE(chrome.longestMatch({}).empty());
}

TEST(TerminologyTest, TellsPluralsAndAllReadingsOfAWord) {
  const std::array<std::string_view, 1> windows = {"windows"};
  const auto plural = languageTerminology().longestMatch(windows);
  ASSERT_EQ(plural.size(), 1u);
  EXPECT_TRUE(plural[0].isPlural);
  EXPECT_EQ(plural[0].term->words, "window");

  const std::array<std::string_view, 1> month = {"month"};
  const auto readings = languageTerminology().longestMatch(month);
  ASSERT_EQ(readings.size(), 2u);
  EXPECT_EQ(readings[0].term->kind, Term::Kind::className);
  EXPECT_EQ(readings[1].term->kind, Term::Kind::property);
}

TEST(TerminologyTest, FindsTermsByCode) {
  EXPECT_EQ(languageTerminology().findCode(Term::Kind::property, fourCharCode("pnam"))->words, "name");
  EXPECT_EQ(languageTerminology().findCode(Term::Kind::className, fourCharCode("pnam")), nullptr);
  EXPECT_EQ(languageTerminology().findCommand(events::make)->words, "make");
  EXPECT_EQ(languageTerminology().findCommand({fourCharCode("none"), fourCharCode("none")}), nullptr);
}

TEST(TerminologyTest, HasNoTermThatTheParserCouldNotReach) {
  for (const Term& term : languageTerminology().rows()) {
    std::vector<std::string_view> words;
    for (std::string_view rest = term.words; !rest.empty();) {
      const auto blank = std::min(rest.find(' '), rest.size());
      words.push_back(rest.substr(0, blank));
      rest.remove_prefix(std::min(blank + 1, rest.size()));
    }
    ASSERT_LE(words.size(), 8u) << term.words;
    const auto matches = languageTerminology().longestMatch(words);
    const bool isFound = std::ranges::any_of(matches, [&](const auto& match) { return match.term == &term; });
    EXPECT_TRUE(isFound) << term.words;
    EXPECT_EQ(term.kind == Term::Kind::command, term.event != EventCode{}) << term.words;
  }
}

} // namespace
} // namespace tabwright::applescript::test
