#include "support/ActionBench.h"
#include "support/FailureText.h"

#include <boost/json/array.hpp>
#include <gtest/gtest.h>

namespace tabwright::actions {
namespace {

using Steps = std::vector<std::string>;
using host::ParameterTexts;
using testsupport::failureText;

class GetListOfTabs : public testing::Test {
protected:
  GetListOfTabs() {
    bench.payload = R"([
      {"tabID": "1", "tabTitle": "News",     "tabURL": "https://News.test/"},
      {"tabID": "2", "tabTitle": "Mail",     "tabURL": "https://mail.test/", "isPrivate": true, "isLoading": true},
      {"tabID": "3", "tabTitle": "Old news", "tabURL": "https://news.test/old"},
      {"tabID": "4", "tabTitle": "News",     "tabURL": "https://other.test/", "isPrivate": true}
    ])";
  }

  boost::json::value list(ParameterTexts parameters) { return bench.perform("GetListOfTabs", std::move(parameters)); }

  // The native ids of the tabs found, such as "1 3".
  std::string ids(ParameterTexts parameters) {
    std::string text;
    const boost::json::value tabs = list(std::move(parameters));
    for (const boost::json::value& tab : tabs.as_array()) {
      const std::string fullID(tab.at("fullID").as_string());
      text += (text.empty() ? "" : " ") + fullID.substr(fullID.find(':') + 1);
    }
    return text;
  }

  testsupport::ActionBench bench;
};

TEST_F(GetListOfTabs, GivesAllTabsInOneRoundTrip) {
  EXPECT_EQ(ids({}), "1 2 3 4");
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count", "frontmost lookup", "run"}));
  EXPECT_NE(bench.scripts.at(0).find("\nreturn my success(my getListOfTabs())\n"), std::string::npos);
}

TEST_F(GetListOfTabs, FiltersByPrivacyURLAndTitle) {
  EXPECT_EQ(ids({{"tabPrivacy", "standard"}}), "1 3");
  EXPECT_EQ(ids({{"tabPrivacy", "incognito"}}), "2 4");
  EXPECT_EQ(ids({{"urlFilter", "contains"}, {"pageURL", "NEWS.test"}}), "1 3");
  EXPECT_EQ(ids({{"urlFilter", "containsCaseSensitive"}, {"pageURL", "news.test"}}), "3");
  EXPECT_EQ(ids({{"titleFilter", "equals"}, {"pageTitle", "News"}}), "1 4");
  EXPECT_EQ(ids({{"titleFilter", "contains"}, {"pageTitle", "news"}, {"urlFilter", "contains"}, {"pageURL", "news"}}),
            "1 3");
  EXPECT_EQ(ids({{"urlFilter", "equals"}, {"pageURL", "https://nowhere.test/"}}), "");
}

TEST_F(GetListOfTabs, SelectsAfterFiltering) {
  EXPECT_EQ(ids({{"listElements", "first"}, {"tabPrivacy", "incognito"}}), "2");
  EXPECT_EQ(ids({{"listElements", "last"}, {"tabPrivacy", "standard"}}), "3");
  EXPECT_EQ(ids({{"listElements", "random"}, {"titleFilter", "equals"}, {"pageTitle", "Mail"}}), "2");
  for (const char* selection : {"all", "first", "last", "random"})
    EXPECT_EQ(ids({{"listElements", selection}, {"titleFilter", "equals"}, {"pageTitle", "none"}}), "") << selection;
}

TEST_F(GetListOfTabs, AsksForTheTextOfAnActiveFilter) {
  EXPECT_EQ(failureText([&] { return list({{"urlFilter", "contains"}}); }),
            "pageURL needs a value. Which value is meant for “URL”?");
  EXPECT_EQ(failureText([&] { return list({{"titleFilter", "equals"}}); }),
            "pageTitle needs a value. Which value is meant for “Title”?");
  EXPECT_EQ(bench.steps, Steps{});
  EXPECT_EQ(ids({{"urlFilter", "contains"}, {"pageURL", ""}}), "1 2 3 4") << "every text contains the empty one";
}

TEST_F(GetListOfTabs, ARecordThatCannotBeReadFailsAsAWhole) {
  bench.payload = R"([{"tabID": "1", "tabTitle": "News"}])";
  EXPECT_EQ(failureText([&] { return list({}); }), "The browser's answer couldn't be understood: malformed JSON text");
}

} // namespace
} // namespace tabwright::actions
