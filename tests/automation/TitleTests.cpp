// Titles and paths by themselves, without menus.
#include "automation/MenuPath.h"
#include "automation/TitlePattern.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::automation {
namespace {

using Texts = std::vector<std::string>;

TEST(PossibleTitleValues, HaveATwinForAnEllipsis) {
  EXPECT_EQ(possibleTitleValues("Save...", TitleCase::counts), (Texts{"Save...", "Save…"}));
  EXPECT_EQ(possibleTitleValues("Save…", TitleCase::counts), (Texts{"Save…", "Save..."}));
  EXPECT_EQ(possibleTitleValues("Save....", TitleCase::counts), (Texts{"Save....", "Save.…"}));
  EXPECT_EQ(possibleTitleValues("Sa...ve", TitleCase::counts), (Texts{"Sa...ve"}));
  EXPECT_EQ(possibleTitleValues("Save... ", TitleCase::counts), (Texts{"Save..."})) << "it ends in a blank";
  EXPECT_EQ(possibleTitleValues("\u2003ÜBER … \n", TitleCase::ignored), (Texts{"über …"}));
}

struct FilterCase {
  StringFilterEnum filter;
  std::string wanted;
  std::string title;
  bool fits;
  TitleCase titleCase = TitleCase::counts;
};

TEST(TitlePattern, FitsByItsFilter) {
  using enum StringFilterEnum;
  for (const FilterCase& each : std::vector<FilterCase>{
           {isExactly, "Open", "Open", true},
           {isExactly, "Open", "open", false},
           {isExactly, "open", "OPEN", true, TitleCase::ignored},
           {isExactly, " Open ", "Open", true},
           {isExactly, "Open", " Open", false}, // the title isn't trimmed
           {isExactly, "Cafe\u0301", "Café", true},
           {contains, "ave a", "Save as", true},
           {contains, "AVE A", "Save as", false},
           {contains, "as…", "Save as...", true},
           {beginsWith, "Save", "Save as", true},
           {beginsWith, "as", "Save as", false},
           {endsWith, "as", "Save as", true},
           {endsWith, "Save", "Save as", false},
           {endsWith, "ÜBER", "Hinüber", true, TitleCase::ignored},
           {regex, "^S.*e$", "Save", true},
           {regex, "av", "Save", true},
           {regex, "^av", "Save", false},
           {regex, "SAVE", "save", true, TitleCase::ignored},
           {regex, R"(e\Sa)", "e a", true, TitleCase::ignored}, // the pattern is put into lower case too
           {regex, R"(e\Sa)", "e a", false},
           {regex, "Sav...", "Sav…", true},                                            // the twin of the pattern
           {regex, "Save(", "Save(", false},                                           // no expression
           {regex, R"(^(\w+)+$)", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa!", false}, // would take for ever
       })
    EXPECT_EQ(TitlePattern(each.wanted, each.filter, each.titleCase).fits(each.title), each.fits)
        << each.wanted << " / " << each.title;
}

TEST(MenuPath, IsSplitAtItsSeparators) {
  const Texts export_{"File", "Export…"};
  for (const char* path : {"File > Export…", "File>Export…", "File \U0010018A Export…", "\tFile >\u2003> Export… \n",
                           "> File >>Export… >"})
    EXPECT_EQ(segmentsOfPath(path), export_) << path;
  EXPECT_EQ(segmentsOfPath("File"), Texts{"File"});
  EXPECT_EQ(segmentsOfPath(" > \U0010018A> "), Texts{});
  EXPECT_EQ(segmentsOfPath(""), Texts{});
  EXPECT_EQ(pathOf(export_), "File > Export…");
}

} // namespace
} // namespace tabwright::automation
