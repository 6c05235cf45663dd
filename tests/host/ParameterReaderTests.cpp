#include "host/ParameterReader.h"
#include "intents/UsageError.h"
#include "support/ActionBench.h"
#include "support/FailureText.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::host {
namespace {

using testing::HasSubstr;

class ParameterReader : public testing::Test {
protected:
  // All parameters of an action as they are after reading, as one JSON text, or the complaint.
  std::string read(std::string_view actionName, const ParameterValues& values) {
    const auto action = bench.catalogue.make(actionName);
    const std::string failure = testsupport::failureText([&] {
      readParameters(*action, values);
      return 0;
    });
    if (failure != "no failure")
      return failure;
    boost::json::object all;
    for (const intents::ParameterBase* parameter : action->parameters())
      all[parameter->name()] = parameter->json();
    return boost::json::serialize(all);
  }

  testsupport::ActionBench bench;
};

constexpr const char* defaults =
    R"({"targetContext":{"id":".focussed","name":"frontmost browser"},"tabSelection":"frontTab","targetTab":null,)"
    R"("cssSelector":null,"pauseAfterSucessInSeconds":"p00"})";
constexpr const char* filledIn =
    R"({"targetContext":{"id":"com.google.chrome","name":"Google Chrome"},"tabSelection":"specificTab",)"
    R"("targetTab":{"targetContext":{"id":"com.brave.browser","name":"Brave Browser"},"title":"","url":"",)"
    R"("isLoading":false,"isPrivate":false,"fullID":"com.brave.browser:8"},"cssSelector":"{\"a\":1}",)"
    R"("pauseAfterSucessInSeconds":"p15"})";

TEST_F(ParameterReader, KeepsDefaultsOfWhatIsNotGiven) {
  EXPECT_EQ(read("ClickElement", ParameterTexts{}), defaults);
  EXPECT_EQ(read("ClickElement", boost::json::object{}), defaults);
  EXPECT_EQ(read("ClickElement", boost::json::object{{"tabSelection", nullptr}, {"cssSelector", nullptr}}), defaults);
}

TEST_F(ParameterReader, FillsInFromTextsAndFromJsonAlike) {
  EXPECT_EQ(
      read("ClickElement", ParameterTexts{{"TargetContext", "chrome"},
                                          {"tabSelection", "specificTab"},
                                          {"targettab", R"({"targetContext":"brave","fullID":"com.brave.browser:8"})"},
                                          {"cssSelector", R"({"a":1})"},
                                          {"pauseAfterSucessInSeconds", "1.5"}}),
      filledIn);
  EXPECT_EQ(read("ClickElement", boost::json::parse(R"({
                   "targetContext": {"id": "com.google.Chrome"}, "tabSelection": "specificTab",
                   "targetTab": {"targetContext": "brave", "fullID": "com.brave.browser:8"},
                   "cssSelector": "{\"a\":1}", "pauseAfterSucessInSeconds": "p15"})")
                                     .as_object()),
            filledIn);
}

TEST_F(ParameterReader, ComplaintsNameTheParameterWhatCameAndWhatMayStandThere) {
  struct Case {
    ParameterValues values;
    const char* complaint;
  };
  const Case cases[]{
      {ParameterTexts{{"selector", "a"}}, "ClickElement has no parameter “selector”. Did you mean cssSelector?"},
      {ParameterTexts{{"targetTabs", "a"}}, "ClickElement has no parameter “targetTabs”. Did you mean targetTab?"},
      {ParameterTexts{{"colour", "red"}}, "ClickElement has no parameter “colour”. Its parameters are targetContext, "
                                          "tabSelection, targetTab, cssSelector, "
                                          "pauseAfterSucessInSeconds."},
      {boost::json::object{{"cssSelectro", "a"}},
       "ClickElement has no parameter “cssSelectro”. Did you mean cssSelector?"},
      {ParameterTexts{{"cssSelector", "a"}, {"CSSSelector", "b"}}, "cssSelector is given twice."},
      {ParameterTexts{{"tabSelection", "fronttab"}},
       "tabSelection can't be \"fronttab\"; give one of frontTab, specificTab. Did you mean frontTab?"},
      {ParameterTexts{{"pauseAfterSucessInSeconds", "0.7"}},
       "pauseAfterSucessInSeconds can't be \"0.7\"; give one of these seconds: 0, 0.5, 1, 1.5, 2, 2.5, 3, 3.5, 4."},
      {boost::json::object{{"targetContext", "chromum"}}, "targetContext can't be \"chromum\"; give one of frontmost, "
                                                          "brave, chromium, chrome, edge, safari, vivaldi, or an "
                                                          "object with an id. Did you mean chromium?"},
      {ParameterTexts{{"targetTab", " \n"}},
       "targetTab is empty: what should give it has given nothing. Give one JSON "
       "object of the type BrowserTabEntity, or its reference, such as chromium:8."},
      {ParameterTexts{{"cssSelector", "a\xff"}}, "cssSelector takes text in UTF-8, but byte 2 of what it was given "
                                                 "(hexadecimal FF) belongs to no character."},
      {boost::json::object{{"cssSelector", 5}}, "cssSelector can't be 5; give a text."},
      {boost::json::object{{"tabSelection", true}}, "tabSelection can't be true; give one of frontTab, specificTab."},
      {ParameterTexts{{"targetContext", "netscape"}}, "targetContext can't be \"netscape\"; give one of frontmost, "
                                                      "brave, chromium, chrome, edge, safari, vivaldi, or an "
                                                      "object with an id."},
      {ParameterTexts{{"targetTab", "8"}}, "targetTab can't be 8; give one JSON object of the type BrowserTabEntity, "
                                           "or its reference, such as chromium:8."},
      {ParameterTexts{{"targetTab", R"([{},{},{}])"}},
       "targetTab can't be a list of 3 items; give one JSON object of the type BrowserTabEntity, or its reference, "
       "such as chromium:8."},
      {boost::json::object{{"targetTab", {{"targetContext", "chromium"}, {"fullID", "a:1"}, {"url", 7}}}},
       "targetTab.url can't be 7; give a text."},
      {boost::json::object{{"targetTab", {{"targetContext", "opera"}, {"fullID", "a:1"}}}},
       "targetTab.targetContext can't be \"opera\"; give one of frontmost, brave, chromium, chrome, edge, safari, "
       "vivaldi, "
       "or an object with an id."},
  };
  for (const Case& one : cases)
    EXPECT_EQ(read("ClickElement", one.values), one.complaint);
}

TEST_F(ParameterReader, SecondsAreWrittenAsPeopleWriteThem) {
  for (const char* text : {"1.5", "1.50", "1.5s", "1.5 s", "p15"})
    EXPECT_THAT(read("ReloadTab", ParameterTexts{{"pauseAfterSucessInSeconds", text}}), HasSubstr(R"(:"p15"})"))
        << text;
  for (const boost::json::value& number : {boost::json::value(2), boost::json::value(2.0)})
    EXPECT_THAT(read("ReloadTab", boost::json::object{{"pauseAfterSucessInSeconds", number}}), HasSubstr(R"(:"p20"})"));
}

// A given value settles the choice that is left open, and a value that wouldn't count is refused.
TEST_F(ParameterReader, AGivenTabOrWindowIsTheOneThatCounts) {
  struct Case {
    const char* action;
    ParameterTexts parameters;
    const char* expected;
  };
  const std::pair<std::string, std::string> tab{"targetTab", "chromium:8"};
  const std::pair<std::string, std::string> window{"targetWindow", "chromium:3"};
  const Case cases[]{
      {"CreateTab", {window}, R"("windowType":"specificWindow")"},
      {"CreateTab",
       {window, {"windowType", "newWindow"}},
       "targetWindow counts only while windowType is specificWindow, and it is newWindow: leave one of the two out."},
      {"OpenInTab", {tab}, R"("targetSelection":"specificTab")"},
      {"OpenInTab", {window}, R"("targetSelection":"newTabInWindow")"},
      {"OpenInTab",
       {tab, window},
       "targetTab and targetWindow can't both be given: one needs the targetSelection specificTab, the other "
       "newTabInWindow. Leave one out."},
      {"GetListOfTabs", {{"pageURL", "news"}}, "pageURL doesn't count while urlFilter is ignore: give urlFilter, too."},
      {"GetListOfTabs", {{"pageURL", "news"}, {"urlFilter", "ignore"}}, R"("pageURL":"news")"},
      {"GetListOfWindows", {{"title", "x"}}, "title doesn't count while titleFilter is ignore: give titleFilter, too."},
  };
  for (const Case& one : cases)
    EXPECT_THAT(read(one.action, one.parameters), HasSubstr(one.expected)) << one.action;
  EXPECT_THAT(read("CloseTab", boost::json::object{{"targetTab", nullptr}}), HasSubstr("targetTab is null"));

  // Every action with a tab selection has the pair.
  int pairs = 0;
  for (const std::string& name : bench.catalogue.names()) {
    if (!bench.catalogue.make(name)->findParameter("tabSelection"))
      continue;
    ++pairs;
    EXPECT_THAT(read(name, ParameterTexts{tab}), HasSubstr(R"("tabSelection":"specificTab")")) << name;
    EXPECT_THAT(read(name, boost::json::object{{"targetTab", "chromium:8"}, {"tabSelection", "frontTab"}}),
                HasSubstr("counts only while tabSelection is specificTab"))
        << name;
  }
  EXPECT_GT(pairs, 10);
}

} // namespace
} // namespace tabwright::host
