#include "applescript/ParserTestSupport.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace tabwright::applescript::test {
namespace {

using testsupport::repeated;

// Each script with all errors found: line, column, length, sentence, number.
TEST(ParserErrors, NameWhatIsExpectedAndWhatIsFound) {
  for (const auto& [source, expected] : std::vector<ParserCase>{
           {"foo bar", "1:5+3 Expected end of line but found identifier. (-2741)"},
           {"set x to 5 6", "1:12+1 Expected end of line but found number. (-2741)"},
           {"set x to", "1:9+0 Expected expression but found end of script. (-2741)"},
           {"-- é\nset é to )", "2:10+1 Expected expression but found “)”. (-2741)"}, // é is two bytes
           {"set x to @", "1:10+1 Expected expression but found unknown token. (-2740)"},
           {"set x to (1", "1:12+0 Expected “)” but found end of script. (-2741)"},
           {"set x to {1, 2", "1:15+0 Expected “,” or “}” but found end of script. (-2741)"},
           {"set x 3", "1:7+1 Expected “to” but found number. (-2741)"},
           {"set 5 to 3", "1:5+1 Expected variable name or property but found number. (-2741)"},
           {"set f(1) to 3", "1:5+1 Expected variable name or property but found identifier. (-2741)"},
           {"if x 3\nend", "1:6+1 Expected “then” but found number. (-2741)"},
           {"repeat with x\nend", "1:14+0 Expected “from” or “in” but found end of line. (-2741)"},
           {"repeat 3\nend", "1:9+0 Expected “times” but found end of line. (-2741)"},
           {"repeat with to in x\nend", "1:13+2 Expected variable name but found “to”. (-2741)"},
           {"x = = 2", "1:5+1 Expected expression but found “=”. (-2741)"},
           {"first foo", "1:7+3 Expected class name but found identifier. (-2741)"},
           {"considering foo\nend",
            "1:13+3 Expected application constant or consideration but found identifier. (-2741)"},
           {"{a:1, 2}", "1:7+1 Expected identifier but found number. (-2741)"},
           {"tell x with y\nend", "1:8+4 Expected end of line or “to” but found “with”. (-2741)"},
           {"property p", "1:10+1 Expected identifier but found identifier. (-2741)"},
           {"on f(x y)\nend", "1:8+1 Expected “,” or “)” but found identifier. (-2741)"},
           {"exit repeat", "1:1+4 Can’t exit from a repeat here: there is none around. (-2741)"},
           {"«abc»", "1:1+7 Expected expression but found “«”. (-2741)"},
           {"1e999", "1:1+5 The number is too large. (-2702)"},
           {"tell application id \"no.such\"\nmake new window 1 2\nend",
            "1:6+24 Can’t get application id \"no.such\". (-1728)\n"
            "2:17+1 Expected end of line but found number. (-2741)"},
       })
    EXPECT_EQ(parsed(source), expected) << source;
}

TEST(ParserErrors, ComeFromTheLexerToo) {
  for (const auto& [source, expected] : std::vector<ParserCase>{
           {"set x to \"abc", "1:10+1 Expected “\"” but found end of script. (-2741)"},
           {R"(set x to "a\q")", "1:12+2 Expected “\"” but found unknown token. (-2741)"},
           {"set |x to 3", "1:5+1 Expected “|” but found end of script. (-2741)\n"
                           "1:12+0 Expected “to” but found end of script. (-2741)"},
           {"(* a (* b *)", "1:1+2 Expected “*)” but found end of script. (-2741)"},
           {"set x to ¬ 3", "1:10+2 Expected expression but found unknown token. (-2740)"},
       })
    EXPECT_EQ(parsed(source), expected) << source;
}

TEST(ParserErrors, CheckTheEndsOfBlocks) {
  for (const auto& [source, expected] : std::vector<ParserCase>{
           {"tell x\nend if", "2:1+6 Expected “end” or “end tell” but found “end if”. (-2741)"},
           {"tell x", "1:7+0 Expected “end” or “end tell” but found end of script. (-2741)"},
           {"repeat\nif x then\nend repeat", "3:1+10 Expected “end” or “end if” but found “end repeat”. (-2741)"},
           {"on f()\nif x then\nend f\non g()\nend g", "3:1+5 Expected “end” or “end if” but found “end f”. (-2741)"},
           {"on f()\ntell x\non g()\nend g", "3:1+2 Expected “end” or “end tell” but found “on”. (-2741)"},
           {"on f()\nend tell", "2:1+8 Expected “end” or “end f” but found “end tell”. (-2741)"},
           {"try\nelse\nend", "2:1+4 Expected “end” or “end try” but found “else”. (-2741)\n"
                              "3:1+3 Expected expression but found “end”. (-2741)"},
           {"end", "1:1+3 Expected expression but found “end”. (-2741)"},
           {"on error\nx", "1:1+2 Expected expression but found “on”. (-2741)"},
       })
    EXPECT_EQ(parsed(source), expected) << source;
}

TEST(ParserErrors, AreFoundBeyondTheFirst) {
  EXPECT_EQ(parsed("set x to )\nif y the\nset z to (\nend if\nrepeat with\nfoo bar\nend repeat\nok()\nset 1 to 2\n"
                   "{a, b} of )\n{a, b} of c"),
            "1:10+1 Expected expression but found “)”. (-2741)\n"
            "2:6+3 Expected “then” but found “the”. (-2741)\n"
            "3:11+0 Expected expression but found end of line. (-2741)\n"
            "5:12+0 Expected variable name but found end of line. (-2741)\n"
            "6:5+3 Expected end of line but found identifier. (-2741)\n"
            "9:5+1 Expected variable name or property but found number. (-2741)\n"
            "10:11+1 Expected expression but found “)”. (-2741)");
}

TEST(ParserErrors, RefuseDictionaryWordsAsVariablesInsideOfTells) {
  EXPECT_EQ(parsed("tell application \"Google Chrome\"\nrepeat with tab in tabs\nend repeat\nset tab to 1\n"
                   "set count to 3\nset reload to 4\nend tell"),
            "2:13+3 Expected variable name but found class name. (-2741)\n"
            "4:5+3 Expected variable name or property but found class name. (-2741)\n"
            "5:5+5 Expected variable name or property but found command name. (-2741)\n"
            "6:5+6 Expected variable name or property but found command name. (-2741)");
}

TEST(ParserErrors, TellOfDoubleDefinitions) {
  EXPECT_EQ(parsed("on f()\nend\non F(x)\nend"), "3:1+11 The handler f is specified more than once. (-2752)");
  EXPECT_EQ(parsed("property p : 1\nproperty P : 2"), "2:1+14 The property p is specified more than once. (-2751)");
  EXPECT_EQ(parsed("beep\non run\nend"),
            "1:1+4 The script has a run handler, so no statement can stand outside of handlers. (-2741)");
}

TEST(ParserErrors, BoundNestingAndHeight) {
  std::istringstream units("(|{|not |- |a of |a ^ |x's y:|get |if x then |tell x to |tell x\n|try\n|script\n|"
                           "on f()\nscript\n|a reference to |before |window before |item -|every window whose |the |"
                           "my |its |text from |x's |count of |«event abcdefgh» ");
  for (std::string unit; std::getline(units, unit, '|');)
    EXPECT_FALSE(parsed(repeated(unit, 20000)).empty()) << unit;
  for (const char* beginning : {"set ", "x as "})
    EXPECT_FALSE(parsed(beginning + repeated("{", 20000)).empty()) << beginning;
  EXPECT_EQ(parsed(repeated("(", 600) + "1" + repeated(")", 600)), "1:500+1 The script is nested too deeply. (-2741)");
  EXPECT_EQ(parsed("x" + repeated(" & x", 3000)), "1:1+8001 The expression is too complex. (-2741)");
  EXPECT_EQ(parsed("x" + repeated("'s y", 3000)), "1:8001+1 The expression is too complex. (-2741)");
  EXPECT_TRUE(parsed(repeated("(", 400) + "1" + repeated(")", 400)).starts_with("(brackets (brackets"));
  EXPECT_TRUE(parsed("x" + repeated(" & x", 1900)).starts_with("(& (& (&"));
}

TEST(ParserErrors, StopAtTheirLimit) {
  const SyntaxDictionaries dictionaries;
  EXPECT_EQ(parse(repeated("set x to )\n", 10000), dictionaries).errors.size(), ParserLimits().errors);
  EXPECT_EQ(parse(repeated("\"\\q\"\n", 10000), dictionaries).errors.size(), ParserLimits().errors);
  ParserLimits small;
  small.sourceBytes = 3;
  const ParseResult result = parse("beep", dictionaries, small);
  ASSERT_EQ(result.errors.size(), 1u);
  EXPECT_EQ(result.errors[0].sentence(), "The script is too large.");
}

} // namespace
} // namespace tabwright::applescript::test
