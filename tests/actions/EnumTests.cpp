#include "actions/SecondsOf.h"
#include "actions/enums/ClickLinkOptions.h"
#include "actions/enums/CreateTabOptions.h"
#include "actions/enums/CreateWindowOptions.h"
#include "actions/enums/EnableDisableSelection.h"
#include "actions/enums/EnableDisableToggleSelection.h"
#include "actions/enums/ErrorHandlingSelection.h"
#include "actions/enums/FormFieldSelectionOption.h"
#include "actions/enums/GetListOfTabsOptions.h"
#include "actions/enums/GetListOfWindowsOptions.h"
#include "actions/enums/KeyboardModifiersStatus.h"
#include "actions/enums/MenuItemBasicsSelection.h"
#include "actions/enums/MenuItemFullSelection.h"
#include "actions/enums/OpenInTabOptions.h"
#include "actions/enums/PauseOption.h"
#include "actions/enums/PostActionDelay.h"
#include "actions/enums/SetFormFieldsOptions.h"
#include "actions/enums/StringFilterEnum.h"
#include "actions/enums/StringFilterOption.h"
#include "actions/enums/TabSelectionOption.h"
#include "actions/enums/TypingDelay.h"
#include "actions/enums/WaitForElementOptions.h"
#include "actions/enums/WaitForTabToFinishLoadingOptions.h"
#include "actions/enums/WindowTitleFilterEnum.h"

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
  const struct {
    intents::EnumDeclaration declaration;
    std::string cases;
  } enums[]{
      {enumDeclaration(TabSelectionOption{}), "TabSelectionOption: frontTab specificTab"},
      {enumDeclaration(FormFieldSelectionOption{}),
       "FormFieldSelectionOption: elementNameAttribute elementIDAttribute cssSelector"},
      {enumDeclaration(PauseOption{}),
       "PauseOption: p00=0.0 p05=0.5 p10=1.0 p15=1.5 p20=2.0 p25=2.5 p30=3.0 p35=3.5 p40=4.0"},
      {enumDeclaration(PostActionDelay{}),
       "PostActionDelay: none=0.0 s0_2=0.2 s0_5=0.5 s1_0=1.0 s1_5=1.5 s2_0=2.0 s3_0=3.0 s4_0=4.0"},
      {enumDeclaration(TypingDelay{}), "TypingDelay: none=0.00 s0_01=0.01 s0_02=0.02 s0_05=0.05 s0_10=0.10 s0_15=0.15 "
                                       "s0_20=0.20 s0_30=0.30 s0_40=0.40"},
      {enumDeclaration(StringFilterOption{}), "StringFilterOption: ignore contains containsCaseSensitive equals"},
      {enumDeclaration(StringFilterEnum{}), "StringFilterEnum: isExactly contains beginsWith endsWith regex"},
      {enumDeclaration(MenuItemBasicsSelection{}), "MenuItemBasicsSelection: title path segmentedPath"},
      {enumDeclaration(MenuItemFullSelection{}), "MenuItemFullSelection: title path segmentedPath reference"},
      {enumDeclaration(ErrorHandlingSelection{}), "ErrorHandlingSelection: raiseError returnNothing"},
      {enumDeclaration(KeyboardModifiersStatus{}), "KeyboardModifiersStatus: enabled disabled"},
      {enumDeclaration(EnableDisableSelection{}), "EnableDisableSelection: enable disable"},
      {enumDeclaration(EnableDisableToggleSelection{}), "EnableDisableToggleSelection: enable disable toggle"},
      {enumDeclaration(WindowTitleFilterEnum{}),
       "WindowTitleFilterEnum: noFiltering isExactly contains beginsWith endsWith regex"},
      {enumDeclaration(CreateTab_WindowTypeOption{}),
       "CreateTab_WindowTypeOption: frontWindow newWindow specificWindow"},
      {enumDeclaration(OpenInTab_TabSelectionOption{}),
       "OpenInTab_TabSelectionOption: frontTab newTabInFrontWindow newTabInWindow specificTab"},
      {enumDeclaration(WaitForTabToFinishLoading_DocumentReadyState{}),
       "WaitForTabToFinishLoading_DocumentReadyState: interactive complete"},
      {enumDeclaration(CreateWindow_WindowTypeOption{}), "CreateWindow_WindowTypeOption: standardWindow privateWindow"},
      {enumDeclaration(GetListOfWindows_ListElementsOption{}),
       "GetListOfWindows_ListElementsOption: all first last random"},
      {enumDeclaration(GetListOfWindows_PrivacyFilterOption{}),
       "GetListOfWindows_PrivacyFilterOption: any standard incognito"},
      {enumDeclaration(GetListOfWindows_VisibilityFilterOption{}),
       "GetListOfWindows_VisibilityFilterOption: any visible hidden"},
      {enumDeclaration(GetListOfTabs_ListElementsOption{}), "GetListOfTabs_ListElementsOption: all first last random"},
      {enumDeclaration(GetListOfTabs_TabPrivacyOption{}), "GetListOfTabs_TabPrivacyOption: any standard incognito"},
      {enumDeclaration(ClickLink_LinkSelectionOption{}), "ClickLink_LinkSelectionOption: labelExact labelContaining"},
      {enumDeclaration(WaitForElement_TimeoutOption{}),
       "WaitForElement_TimeoutOption: p00=0.0 p02=2.0 p04=4.0 p06=6.0 p08=8.0 p10=10.0 p12=12.0 p14=14.0 p16=16.0 "
       "p18=18.0 p20=20.0"},
      {enumDeclaration(WaitForElement_OnFailureOption{}), "WaitForElement_OnFailureOption: returnFalse raiseError"},
      {enumDeclaration(SetFormFields_FormFieldsSelectionOption{}),
       "SetFormFields_FormFieldsSelectionOption: elementNameAttribute elementIDAttribute cssSelector"},
  };
  for (const auto& [declaration, cases] : enums)
    EXPECT_EQ(casesOf(declaration), cases);
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
