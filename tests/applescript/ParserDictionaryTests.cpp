#include "applescript/ParserTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace tabwright::applescript::test {
namespace {

/// The meaning of a line inside of a `tell` to an application.
std::string inside(const std::string& application, const std::string& line) {
  const std::string text = parsed("tell application \"" + application + "\"\n" + line + "\nend tell");
  const std::string head = "tell (application \"" + application + "\")\n  ";
  return text.starts_with(head) ? text.substr(head.size()) : text;
}

TEST(ParserDictionaries, GiveTestsToTheOutermostPick) {
  EXPECT_EQ(inside("Google Chrome", "URL of first tab of front window where its mode is x"),
            "(property URL'URL ' of (index tab'CrTb' at 1 whose (= (property mode'mode' of it) x) of (index "
            "window'cwin' at 1)))");
  EXPECT_EQ(inside("Google Chrome", "third tab whose (loading) of w"),
            "(index tab'CrTb' at 3 whose (brackets (property loading'ldng')) of w)");
}

TEST(ParserDictionaries, AreAskedFromTheInnermostTellOutwards) {
  EXPECT_EQ(inside("Google Chrome", "tell application \"System Events\" to set frontmost to active tab"),
            "tell-to (application \"System Events\")\n"
            "    set (property frontmost'pisf') := (property active tab'acTa')");
  EXPECT_EQ(inside("Safari", "tell application id \"COM.google.Chrome\" to get {tabs, URL, current tab}"),
            "tell-to (application-id \"COM.google.Chrome\")\n"
            "    (command get'coregetd' direct (list (every tab'CrTb') (property URL'URL ') (property current "
            "tab'cTab')))");
  EXPECT_EQ(inside("Google Chrome", "tell w to get title"),
            "tell-to w\n    (command get'coregetd' direct (property title'titl'))");
}

TEST(ParserDictionaries, GiveWordsToLinesThatNameTheirApplication) {
  EXPECT_EQ(parsed("URL of active tab of window 1 of application \"Google Chrome\"\nactive of x"),
            "(property URL'URL ' of (property active tab'acTa' of (index window'cwin' at 1 of (application \"Google "
            "Chrome\"))))\n(property active of x)");
  EXPECT_EQ(parsed("using terms from application \"Safari\"\ncurrent tab of x\nend"),
            "using-terms (application \"Safari\")\n  (property current tab'cTab' of x)");
  EXPECT_EQ(parsed("use application \"Safari\"\ncurrent tab of x"),
            "use 3 \"Safari\"\n(property current tab'cTab' of x)");
}

TEST(ParserDictionaries, LeaveGeneralWordsWhereTheTargetIsKnownAtRunTimeOnly) {
  EXPECT_EQ(parsed("tell application id bundleID\nset tmp to id of first window\nset n to title\nactivate\nend tell"),
            "tell (application-id bundleID)\n  set tmp := (property id'ID  ' of (index window'cwin' at 1))\n"
            "  set n := title\n  (command activate'miscactv')");
}

TEST(ParserDictionaries, LetVariablesHaveTheirWordsOutsideOfTells) {
  for (const auto& [source, expected] : std::vector<ParserCase>{
           {"repeat with URL in xs\nlog URL\nend repeat", "repeat URL in xs\n  (command log'ascrcmnt' direct URL)"},
           {"set index to 3\nset x to item index of xs", "set index := 3\nset x := (index item'cobj' at index of xs)"},
           {"set tab to 1\nlog tab & return", "set tab := 1\n(command log'ascrcmnt' direct (& tab return))"},
           {"on f(name)\nname & name of x\nend f", "on f name\n  (& name (property name'pnam' of x))"},
           {"set numbers to {1}\nset item 1 of numbers to 2",
            "set numbers := (list 1)\nset (index item'cobj' at 1 of numbers) := 2"},
           // A word that no statement has bound is the dictionary's.
           {"log tab", "(command log'ascrcmnt' direct tab)"},
           {"name", "(property name'pnam')"},
       })
    EXPECT_EQ(parsed(source), expected) << source;
  // Inside of a tell the dictionary has its words, whatever is bound.
  EXPECT_EQ(parsed("on f(title)\ntell application \"Google Chrome\" to get title\nend f"),
            "on f title\n  tell-to (application \"Google Chrome\")\n"
            "    (command get'coregetd' direct (property title'titl'))");
}

} // namespace
} // namespace tabwright::applescript::test
