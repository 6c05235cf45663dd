// What the actions on tabs ask for and give. What their programs do is tried in TabEffectTests.
#include "support/ActionBench.h"
#include "support/FailureText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::actions {
namespace {

using Steps = std::vector<std::string>;
using host::ParameterTexts;
using testsupport::failureText;

constexpr const char* record =
    R"({"tabID": "8", "tabTitle": "News", "tabURL": "https://news.test/", "isLoading": true, "htmlContent": ""})";

class TabActions : public testing::Test {
protected:
  TabActions() { bench.payload = record; }

  testsupport::ActionBench bench;
};

constexpr const char* chromium = "org.chromium.chromium";
TEST_F(TabActions, TabsCarryTheBrowserThatAnswered) {
  const boost::json::value found{{"id", chromium}, {"name", "Chromium"}};
  for (const char* action : {"CreateTab", "CloseTab", "GetDetailsOfTab"}) {
    const boost::json::value tab = bench.perform(action, {});
    EXPECT_EQ(tab.at("targetContext"), found) << action;
    EXPECT_EQ(tab.at("fullID"), "org.chromium.chromium:8") << action;
    EXPECT_EQ(tab.at("isLoading"), true) << action;
  }
  EXPECT_EQ(bench.perform("OpenInTab", {{"newURL", "https://a.test/"}}).at("targetContext"), found);
}

TEST_F(TabActions, FocusTabKeepsTheTabsOwnBrowser) {
  const boost::json::value tab = bench.perform(
      "FocusTab",
      {{"targetTab",
        R"({"targetContext":{"id":"com.brave.browser","name":"My Brave"},"fullID":"com.brave.browser:8"})"}});
  EXPECT_EQ(tab.at("targetContext").at("name"), "My Brave");
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "run"}));
}

TEST_F(TabActions, AskForWhatIsMissingBeforeTheyCount) {
  struct Case {
    const char* action;
    ParameterTexts parameters;
    const char* question;
  };
  const char* const tab = "targetTab needs a value. Which tab? Give one that another action returned.";
  const char* const window = "targetWindow needs a value. Which window? Give one that another action returned.";
  const char* const url = "newURL needs a value. What is the URL?";
  const Case cases[]{
      {"CreateTab", {{"windowType", "specificWindow"}}, window},
      {"CloseTab", {{"tabSelection", "specificTab"}}, tab},
      {"FocusTab", {}, tab},
      {"ReloadTab", {{"tabSelection", "specificTab"}}, tab},
      {"GetDetailsOfTab", {{"tabSelection", "specificTab"}}, tab},
      {"WaitForTabToFinishLoading", {{"tabSelection", "specificTab"}}, tab},
      {"OpenInTab", {}, url},
      {"OpenInTab", {{"newURL", " \n"}}, url},
      {"OpenInTab", {{"newURL", "ftp://host"}}, url},
      {"OpenInTab", {{"newURL", "https://a.test/ "}}, url},
      {"OpenInTab", {{"newURL", "https://a.test/"}, {"targetSelection", "specificTab"}}, tab},
      {"OpenInTab", {{"newURL", "https://a.test/"}, {"targetSelection", "newTabInWindow"}}, window},
      {"OpenInTab", {{"newURL", "http:"}, {"targetSelection", "specificTab"}}, url}, // the address is asked for first
  };
  for (const Case& one : cases)
    EXPECT_EQ(failureText([&] { return bench.perform(one.action, one.parameters); }), one.question) << one.action;
  EXPECT_EQ(bench.steps, Steps{});
}

TEST_F(TabActions, SayWhyAnAddressIsAskedForAgain) {
  for (const auto& [text, reason] : {std::pair{"example.org", "scheme"},
                                     {"chrome://settings/", "scheme"},
                                     {"http:///path", "host"},
                                     {"https://a.test/b c", "character"}}) {
    try {
      bench.perform("OpenInTab", {{"newURL", text}});
      ADD_FAILURE() << text;
    } catch (const platform::Failure& failure) {
      ASSERT_TRUE(failure.cause()) << text;
      EXPECT_EQ(failure.cause()->identity.caseName, reason) << text;
    }
  }
}

TEST_F(TabActions, PauseOnlyAfterASuccess) {
  bench.perform("OpenInTab", {{"newURL", "https://a.test/"}, {"pauseAfterSucessInSeconds", "1.5"}});
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "frontmost lookup", "run", "sleep 1.5"}));

  bench.payload = R"(["whatever"])";
  bench.perform("ReloadTab", {{"targetContext", "brave"}, {"pauseAfterSucessInSeconds", "p40"}});
  EXPECT_EQ(bench.steps.back(), "sleep 4");

  bench.payload = "[]";
  EXPECT_EQ(failureText([&] { return bench.perform("ReloadTab", {{"pauseAfterSucessInSeconds", "p40"}}); }),
            "The JavaScript ended in an exception that nothing caught, the code is likely malformed");
  EXPECT_EQ(bench.steps.back(), "run");
}

} // namespace
} // namespace tabwright::actions
