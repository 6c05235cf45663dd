// The programs and results of the actions on tabs. The effects of the programs are tried in TabEffectTests.
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

class TabActions : public testing::Test {
protected:
  TabActions() { bench.payload = R"({"tabID": "8", "tabTitle": "News", "tabURL": "https://news.test/"})"; }

  testsupport::ActionBench bench;
};

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

} // namespace
} // namespace tabwright::actions
