#include "actions/SecondsOf.h"
#include "actions/enums/PauseOption.h"
#include "actions/enums/StringFilterOption.h"

#include <gtest/gtest.h>

#include <string>

namespace tabwright::actions {
namespace {

TEST(StringFilter, ComparesByItsRule) {
  struct Case {
    StringFilterOption filter;
    const char* item;
    const char* text;
    bool isPassed;
  };
  using enum StringFilterOption;
  const Case cases[]{
      {ignore, "a", "b", true},
      {contains, "https://Example.com", "EXAMPLE", true},
      {contains, "GRÜSSE", "grüsse", true},
      {contains, "İstanbul", "istanbul", false}, // in lower case a dot above stays on the i
      {contains, "ΟΔΟΣ", "οδος", true},
      {contains, "abc", "abd", false},
      {contains, "abc", "", true},
      {contains, "", "a", false},
      {containsCaseSensitive, "Example", "xamp", true},
      {containsCaseSensitive, "Example", "example", false},
      {containsCaseSensitive, "Example", "", true},
      {equals, "News", "News", true},
      {equals, "News", "news", false},
      {equals, "News", "New", false},
      {equals, "", "", true},
      // Composed and decomposed letters are one, and none is found in what it is a part of.
      {equals, "Caf\u00E9", "Cafe\u0301", true},
      {contains, "Cafe\u0301 News", "CAF\u00C9", true},
      {containsCaseSensitive, "Caf\u00E9", "e\u0301", true},
      {containsCaseSensitive, "Cafe\u0301", "Cafe", false},
  };
  for (const Case& one : cases)
    EXPECT_EQ(passes(one.filter, one.item, one.text), one.isPassed)
        << intents::enumCase(one.filter).name << " " << one.item << " " << one.text;
}

} // namespace
} // namespace tabwright::actions
