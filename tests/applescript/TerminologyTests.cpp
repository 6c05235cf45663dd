#include "applescript/terminology/Terminology.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace tabwright::applescript::test {
namespace {

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
