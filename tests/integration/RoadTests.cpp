// Programs whose page or browser leaves them in the middle: the real engine and interpreter over a real Chromium.
#include "RealRoad.h"
#include "engine/AppleScriptSnippets.h"

#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

namespace tabwright::scripting {
namespace {

using engine::AppleScriptSnippets;
using Texts = std::vector<std::string>;

using Road = RealRoad;

TEST_F(Road, APageThatGoesAwayDuringItsJobIsTold) {
  support::PageServer pages;
  pages.serve("/page", "<title>P</title>");
  open(pages.url("/page"));
  const std::string job = AppleScriptSnippets::jobForFrontTab(
      "location.href = '" + pages.url("/page") + "?again'; await new Promise(() => {})", 30.0, 0.2);
  EXPECT_EQ(testsupport::failureName([&] { runLines<Texts>(chromiumTarget(), job); }),
            "AppleScriptRuntimeError.pageLoadDuringExecution");
}

TEST_F(Road, ABrowserThatDiesDuringARunEndsIt) {
  support::ChromiumProcess doomed;
  answering = makeDriver(doomed);
  const TabID tab = answering->snapshot(limits())->windows.at(0).tabs.at(0).id;
  answering->perform(Navigate{tab, page("idle")}, limits());
  const std::string failure = testsupport::failureName([&] {
    std::jthread killer([&] {
      eventually([&] { return answering->snapshot(limits())->windows.at(0).tabs.at(0).title == "busy"; });
      doomed.kill();
    });
    runLines<Texts>(chromiumTarget(), AppleScriptSnippets::jobForFrontTab(
                                          "document.title = 'busy'; await new Promise(() => {})", 60.0, 0.2));
  });
  EXPECT_EQ(failure.substr(0, 11), "ScriptError");
  EXPECT_TRUE(leftNoScript());
}

/// The outcome of JavaScript in a tab: its texts as JSON, or the case of the failure, and what lies beneath it.
std::string outcomeOf(const std::function<boost::json::value()>& run) {
  try {
    return boost::json::serialize(run());
  } catch (const platform::Failure& failure) {
    return failure.identity().caseName + ": " + (failure.cause() ? failure.cause()->sentence : "no cause");
  }
}

TEST_F(Road, NoPageCanTakeAwayWhatAJobNeedsAndOneThatFailsSaysWhy) {
  constexpr const char* noAnswer = "frontAppIsNotABrowser: The page gave no answer in the time";
  struct Row {
    const char* page; ///< what its script did before
    const char* code;
    std::string outcome; ///< its beginning
  };
  for (const Row& row : std::vector<Row>{
           {"", "return [1, [2, [3.5]], {a: 1}, true, , null]", R"(["1","2","3.5","","true",""])"},
           {"", "return new Promise(done => setTimeout(() => done(['late']), 400))", R"(["late"])"},
           {"", "throw null", "frontAppIsNotABrowser: The page’s code threw null"},
           {"", "return Promise.reject(new Error('no'))", "frontAppIsNotABrowser: The page’s code failed: Error: no"},
           {"", "return new Promise((_, no) => setTimeout(() => no('later'), 400))",
            "frontAppIsNotABrowser: The page’s code failed: later"},
           {"", "return new Promise(() => {})", noAnswer},
           {"", "var await = 1", "pageLoadDuringExecution: The page could not begin with the code: "},
           {"Array.prototype.map = Array.prototype.flat = Array.prototype.includes = () => { throw 1 }",
            "return [1, [2]]", R"(["1","2"])"},
           {"Promise.prototype.then = () => {}", "return [1, [2]]", R"(["1","2"])"},
           {"Object.prototype.then = () => {}", "return [1, [2]]", R"(["1","2"])"},
           {"Object.prototype.then = () => {}", "return {}", noAnswer},
           {"window.Promise = window.setTimeout = window.performance = null", "return [1, [2]]", R"(["1","2"])"}}) {
    support::PageServer pages;
    pages.serve("/page", std::string("<title>P</title><script>") + row.page + "</script>");
    awaitLoaded(open(pages.url("/page")));
    EXPECT_TRUE(outcomeOf([&] {
                  return perform("RunJavascriptInTab", {{"targetContext", "chromium"}, {"jsCode", row.code}});
                }).starts_with(row.outcome))
        << row.page << " | " << row.code;
  }
}

TEST_F(Road, ASuccessThatCameToNothingGivesNotice) {
  open(page("<a id=a href='#'>a</a><input name=i value=v>"));
  std::vector<std::string> expected;
  const std::vector<std::tuple<std::string, host::ParameterTexts, std::string>> rows{
      {"ClickElement", {{"cssSelector", "#a\n"}}, ""},
      {"ClickElement", {{"cssSelector", "#none"}}, "noSuchElement"},
      {"ClickElement", {{"cssSelector", "["}}, "pageException"},
      {"ClickLink", {{"label", "a"}}, ""},
      {"ClickLink", {{"label", "b"}}, "noSuchLink"},
      {"SetFormFieldValue", {{"targetField", "none"}, {"newValue", ""}}, "notSet"},
      {"SetFormFields", {{"inputDict", R"({"i": "v", "none": ""})"}}, "notSet"},
      {"GetFormFieldValue", {{"fieldTargetSpec", "i"}}, ""},
      {"GetFormFieldValue", {{"fieldTargetSpec", "none"}}, "noValue"},
      {"GetPageText", {{"cssSelector", "#a"}}, ""},
      {"GetPageText", {{"cssSelector", "#none"}}, "noSuchElement"},
      {"GetPageText", {{"cssSelector", "["}}, "pageException"}};
  for (auto [action, parameters, notice] : rows) {
    parameters.emplace_back("targetContext", "chromium");
    perform(action, parameters);
    if (!notice.empty())
      expected.push_back(notice);
  }
  EXPECT_EQ(noticed(), expected);
}

TEST_F(Road, APagesTextIsWhatItShows) {
  support::PageServer pages;
  pages.serve("/a/page", "<base href='../b/'><style>.menu, #gone { display: none } i { visibility: visible }</style>"
                         "<div class=menu>m<p>n</div><p>a<span id=gone>x</span> <a href=c>b</a><script>1</script>"
                         "<p style='display: contents'>d<details><summary>e</summary>f</details><svg><text>g</svg>");
  awaitLoaded(open(pages.url("/a/page")));
  EXPECT_EQ(perform("GetPageText", {{"targetContext", "chromium"}}),
            boost::json::value("a [b](" + pages.url("/b/c") + ")\n\nd\n\n**e**\n\nf\n"));
}

TEST_F(Road, AFailureOfTheActionsOwnTellsTheCause) {
  const TabID tab = open(page("empty"));
  const auto waiting = [&](const char* selector) {
    return outcomeOf([&] {
      return perform("WaitForElement", {{"targetContext", "chromium"}, {"cssSelector", selector}, {"timeout", "2"}});
    });
  };
  EXPECT_THAT(waiting("["), testing::StartsWith("pageElementNotFound: Nothing was found. The page said: SyntaxError"));
  EXPECT_EQ(waiting("#none"),
            "pageElementNotFound: Nothing was found: no element that can be seen matched “#none” in time.");
  driver().perform(Navigate{tab, "http://127.0.0.1:2/"}, limits());
  EXPECT_THAT(waiting("#none"),
              testing::StartsWith("pageElementNotFound: The page http://127.0.0.1:2/ could not be loaded"));
}

} // namespace
} // namespace tabwright::scripting
