#include "actions/SecondsOf.h"
#include "actions/enums/GetListOfTabsOptions.h"
#include "actions/enums/PauseOption.h"
#include "actions/enums/StringFilterOption.h"
#include "actions/enums/TabSelectionOption.h"

#include <gtest/gtest.h>

#include <string>

namespace tabwright::actions {
namespace {

std::string casesOf(const intents::EnumDeclaration& declaration) {
  std::string text = std::string(declaration.name) + ":";
  for (const intents::EnumCase& enumCase : declaration.cases) {
    text += " " + std::string(enumCase.name);
    if (enumCase.rawValue != enumCase.name)
      text += "=" + std::string(enumCase.rawValue);
  }
  return text;
}

TEST(Enums, HaveTheirCasesAndRawValues) {
  EXPECT_EQ(casesOf(enumDeclaration(TabSelectionOption{})), "TabSelectionOption: frontTab specificTab");
  EXPECT_EQ(casesOf(enumDeclaration(PauseOption{})),
            "PauseOption: p00=0.0 p05=0.5 p10=1.0 p15=1.5 p20=2.0 p25=2.5 p30=3.0 p35=3.5 p40=4.0");
  EXPECT_EQ(casesOf(enumDeclaration(StringFilterOption{})),
            "StringFilterOption: ignore contains containsCaseSensitive equals");
  EXPECT_EQ(casesOf(enumDeclaration(GetListOfTabs_ListElementsOption{})),
            "GetListOfTabs_ListElementsOption: all first last random");
  EXPECT_EQ(casesOf(enumDeclaration(GetListOfTabs_TabPrivacyOption{})),
            "GetListOfTabs_TabPrivacyOption: any standard incognito");
}

TEST(SecondsOf, ReadsADecimalNumberToItsEnd) {
  EXPECT_EQ(secondsOf(PauseOption::p05), 0.5);
  EXPECT_EQ(secondsOf("0.01"), 0.01);
  EXPECT_EQ(secondsOf("10"), 10.0);
  for (const char* text : {"", "x", "1,5", "1.5s", " 1"})
    EXPECT_EQ(secondsOf(text), 0.0) << text;
}

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
  };
  for (const Case& one : cases)
    EXPECT_EQ(passes(one.filter, one.item, one.text), one.isPassed)
        << intents::enumCase(one.filter).name << " " << one.item << " " << one.text;
}

} // namespace
} // namespace tabwright::actions
