// Actions and the runtime library from end to end: the real engine, interpreter and dictionaries over a real Chromium.
#include "RealRoad.h"
#include "engine/AppleScriptSnippets.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

namespace tabwright::scripting {
namespace {

using engine::AppleScriptSnippets;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Texts = std::vector<std::string>;

support::PageServer& pages() {
  static support::PageServer server;
  return server;
}

const char* const formPage = R"(<!DOCTYPE html><title>Form</title>
<p id=out>off</p><button id=go onclick="out.textContent='on'">Go</button>
<p id=text>Some <b>bold</b> text</p>)";

class Road : public RealRoad {
protected:
  TabID openForm() {
    pages().serve("/form", formPage);
    return open(pages().url("/form"));
  }
  std::string lampOf(TabID tab) {
    return std::string(evaluate(tab, "document.getElementById('out').textContent").as_string());
  }
};

TEST_F(Road, ClicksAnElementOfTheFrontTab) {
  const TabID tab = openForm();
  EXPECT_EQ(perform("ClickElement", {{"targetContext", "chromium"}, {"cssSelector", "#go"}}), boost::json::value());
  EXPECT_EQ(lampOf(tab), "on");
  EXPECT_TRUE(leftNoScript());
}

TEST_F(Road, ClicksAnElementOfATabThatAnotherActionListed) {
  const TabID form = openForm();
  const TabID other = open("data:text/html,<title>Other</title>");
  const boost::json::value list =
      perform("GetListOfTabs", {{"targetContext", "chromium"}, {"titleFilter", "equals"}, {"pageTitle", "Form"}});
  ASSERT_EQ(list.as_array().size(), 1U);
  EXPECT_EQ(list.at(0).at("fullID").as_string(), "org.chromium.chromium:" + std::to_string(form));
  EXPECT_EQ(list.at(0).at("url").as_string(), pages().url("/form"));

  perform("ClickElement",
          {{"tabSelection", "specificTab"}, {"targetTab", boost::json::serialize(list)}, {"cssSelector", "#go"}});
  EXPECT_EQ(lampOf(form), "on");
  EXPECT_NE(form, other);
}

TEST_F(Road, ASelectorThatFindsNothingOrThrowsIsNoFailure) {
  openForm();
  perform("ClickElement", {{"targetContext", "chromium"}, {"cssSelector", "#nothing"}});
  perform("ClickElement", {{"targetContext", "chromium"}, {"cssSelector", "a["}});
}

TEST_F(Road, ATabThatIsGoneIsNotFound) {
  EXPECT_EQ(failureOf([&] {
              perform("ClickElement",
                      {{"tabSelection", "specificTab"},
                       {"targetTab", R"({"fullID":"org.chromium.chromium:1","targetContext":"chromium"})"},
                       {"cssSelector", "#go"}});
            }),
            "AppleScriptRuntimeError.tabNotFound");
  EXPECT_TRUE(leftNoScript());
}

TEST_F(Road, APageThatGoesAwayDuringItsJobIsTold) {
  openForm();
  const std::string job = AppleScriptSnippets::jobForFrontTab(
      "location.href = '" + pages().url("/form") + "?again'; await new Promise(() => {})", 30.0, 0.2);
  EXPECT_EQ(failureOf([&] { runLines<Texts>(chromiumTarget(), job); }),
            "AppleScriptRuntimeError.pageLoadDuringExecution");
}

TEST_F(Road, JobsDeliverWhatTheyReturnAsTexts) {
  openForm();
  const auto job = [&](const std::string& js) {
    return runLines<Texts>(chromiumTarget(), AppleScriptSnippets::jobForFrontTab(js, 10.0, 0.2));
  };
  EXPECT_THAT(job("return [1, [2, [3]], {a: 1}]"), ElementsAre("1", "2", "3", ""));
  EXPECT_THAT(job("return undefined"), ElementsAre(AppleScriptSnippets::emptyResultMarker()));
  EXPECT_THAT(job("return 0"), ElementsAre("0"));
  EXPECT_THAT(job("return false"), ElementsAre("false"));
  EXPECT_THAT(job("return ''"), ElementsAre(""));
  EXPECT_THAT(job("return []"), ElementsAre());
  EXPECT_THAT(job("return \"ü \\\\ \\\" 😀\""), ElementsAre("ü \\ \" 😀"));
  EXPECT_THAT(job("throw new Error('x')"), ElementsAre("Error: x"));
  EXPECT_THAT(job("await new Promise(done => setTimeout(done, 300)); return 'late'"), ElementsAre("late"));
}

TEST_F(Road, ABrowserThatDiesDuringARunEndsIt) {
  support::ChromiumProcess doomed;
  answering = makeDriver(doomed);
  const std::string failure = failureOf([&] {
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

/// Both families' handlers over the one browser.
class Library : public Road, public ::testing::WithParamInterface<std::string> {
protected:
  static bool isSafari() { return GetParam() == "safari"; }
  static engine::TargetContext target() { return isSafari() ? safariTarget() : chromiumTarget(); }

  std::string text(const std::string& lines) { return runLines<std::string>(target(), lines); }
};

TEST_P(Library, FindsTheFrontTabAndItsWindow) {
  openForm();
  EXPECT_EQ(text("set {w, wid, t, tid} to my getFrontVars()\nreturn success(name of t)"), "Form");
  EXPECT_EQ(text("set {w, wid, t, tid} to my getFrontVars()\n"
                 "set {t2, w2} to my findNativeTabAndWindowForTabID(tid)\nreturn success(name of t2)"),
            "Form");
  EXPECT_EQ(text("set {w, wid, t, tid} to my getFrontVars()\n"
                 "set w2 to my findNativeWindowWithID(wid as text)\nreturn success((id of w2 is wid) as text)"),
            "true");
  EXPECT_EQ(text("return success((my findNativeWindowWithID(\"1\") is null) as text)"), "true");
}

TEST_P(Library, TellsATabInDetail) {
  const TabID tab = openForm();
  evaluate(tab, "getSelection().selectAllChildren(document.getElementById('text'))");
  const std::string lines = "set {w, wid, t, tid} to my getFrontVars()\n"
                            "set d to my makeDetailedBrowserTabDataForID(tid)\nreturn success(FIELD of d)";
  const auto field = [&](const std::string& name) {
    std::string filled = lines;
    filled.replace(filled.find("FIELD"), 5, name);
    return text(filled);
  };
  EXPECT_EQ(field("pageSelectionText"), "Some bold text");
  EXPECT_EQ(field("pageSelectionHTML"), "Some <b>bold</b> text");
  EXPECT_EQ(field("tabURL"), pages().url("/form"));
  EXPECT_THAT(field("textContent"), HasSubstr("Some bold text"));
  EXPECT_THAT(field("htmlContent"), HasSubstr("<button id=\"go\""));
}

TEST_P(Library, MakesFocusesAndClosesTabs) {
  openForm();
  const std::string made = text("set {w, wid, t, tid} to my getFrontVars()\n"
                                "set n to my createTabInWindow(w, \"data:text/html,<title>New</title>\")\n"
                                "repeat 100 times\nif name of n is \"New\" then exit repeat\ndelay 0.1\nend repeat\n"
                                "my focusTabAndWindow(t, w)\n"
                                "set frontmostTab to item 3 of my getFrontVars()\n"
                                "set names to {name of n, name of frontmostTab}\n"
                                "close n\nreturn success((item 1 of names) & \"/\" & (item 2 of names))");
  EXPECT_EQ(made, "New/Form");
}

TEST_P(Library, WaitsForAPageAndRunsJavaScript) {
  openForm();
  EXPECT_TRUE(runLines<bool>(target(), "return my waitForTabReadyState(item 3 of my getFrontVars(), \"complete\")"));
  EXPECT_EQ(text("return success(my executeJavascriptInTab(\"'a' + 1\", item 3 of my getFrontVars()))"), "a1");
}

TEST_P(Library, TellsPrivateWindowsApart) {
  const WindowID window = driver().makeWindow(WindowMode::incognito, "data:text/html,<title>P</title>", limits());
  eventually([&] { return findWindow(window)->title == "P"; });
  EXPECT_EQ(
      text("set n to 0\nrepeat with w in my getListOfWindows()\nif isPrivate of w then set n to n + 1\nend repeat\n"
           "return success(n as text)"),
      "1");
  const boost::json::value tabs =
      perform("GetListOfTabs", {{"targetContext", GetParam()}, {"tabPrivacy", "incognito"}});
  EXPECT_EQ(tabs.as_array().size(), 1U);
  driver().closeWindow(window, limits());
}

INSTANTIATE_TEST_SUITE_P(Families, Library, ::testing::Values("chromium", "safari"),
                         [](const auto& info) { return info.param; });

} // namespace
} // namespace tabwright::scripting
