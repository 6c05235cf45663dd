// What actions do on a real Chromium, through either family's dictionary.
#include "RealRoad.h"
#include "intents/IntentFile.h"
#include "intents/ValueTraits.h"

#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

namespace tabwright::scripting {
namespace {

using boost::json::value;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using Parameters = host::ParameterTexts;

support::PageServer& pages() {
  static support::PageServer server;
  return server;
}

class Catalogue : public RealRoad, public ::testing::WithParamInterface<std::string> {
protected:
  static bool isSafari() { return GetParam() == "safari"; }

  /// An action that aims at a browser by its parameter.
  value run(const std::string& action, Parameters parameters = {}) {
    parameters.emplace(parameters.begin(), "targetContext", GetParam());
    return perform(action, parameters);
  }
  /// One that works on a tab or window, which knows its browser.
  value runOn(const std::string& action, const std::string& parameter, const value& entity,
              Parameters parameters = {}) {
    parameters.emplace_back(parameter, boost::json::serialize(entity));
    return perform(action, parameters);
  }
  TabID openPage(const std::string& body) {
    pages().serve("/page", body);
    return open(pages().url("/page"));
  }
  std::string text(TabID tab, const std::string& javascript) {
    return std::string(evaluate(tab, javascript).as_string());
  }
  std::size_t windowCount() { return snapshot()->windows.size(); }
  std::size_t tabCount() {
    std::size_t count = 0;
    const auto seen = snapshot();
    for (const WindowState& window : seen->windows)
      count += window.tabs.size();
    return count;
  }
};

const char* textOf(const value& object, std::string_view key) {
  return object.at(key).as_string().c_str();
}

TEST_P(Catalogue, OpensFindsFocusesAndClosesTabs) {
  pages().serve("/one", "<title>One</title><p>first");
  const std::size_t before = tabCount();
  const value made = run("CreateTab");
  EXPECT_EQ(tabCount(), before + 1);

  const std::string address = pages().url("/one");
  const value opened = runOn("OpenInTab", "targetTab", made, {{"targetSelection", "specificTab"}, {"newURL", address}});
  EXPECT_STREQ(textOf(opened, "title"), address.c_str()) << "its own title isn't known yet";
  EXPECT_EQ(opened.at("fullID"), made.at("fullID"));
  EXPECT_EQ(runOn("WaitForTabToFinishLoading", "targetTab", opened,
                  {{"tabSelection", "specificTab"}, {"readyState", "complete"}}),
            value(true));

  const value listed = run("GetListOfTabs", {{"urlFilter", "equals"}, {"pageURL", address}});
  ASSERT_EQ(listed.as_array().size(), 1U);
  EXPECT_EQ(listed.at(0).at("fullID"), made.at("fullID"));
  EXPECT_STREQ(textOf(listed.at(0), "title"), "One");

  const value other = run("OpenInTab", {{"targetSelection", "newTabInFrontWindow"}, {"newURL", address + "?2"}});
  EXPECT_STREQ(textOf(runOn("FocusTab", "targetTab", made), "title"), "One");
  const value details = run("GetDetailsOfTab");
  EXPECT_EQ(details.at("fullID"), made.at("fullID")) << "the focused tab is the front tab";
  EXPECT_THAT(textOf(details, "textContent"), StartsWith("first"));

  // References of Safari are positions: the later one goes first.
  EXPECT_THAT(textOf(runOn("CloseTab", "targetTab", other, {{"tabSelection", "specificTab"}}), "fullID"),
              testing::EndsWith(":0"));
  EXPECT_STREQ(textOf(run("CloseTab"), "title"), "One");
  EXPECT_EQ(tabCount(), before);
  EXPECT_EQ(failureOf([&] { runOn("FocusTab", "targetTab", made); }), "AppleScriptRuntimeError.tabNotFound");
}

TEST_P(Catalogue, TellsTheSelectionAsTextAsMarkdownAndAsRichText) {
  const TabID tab = openPage("<title>S</title><p>before</p><div id=s><h2>News</h2><ul><li>a <b>b</b><ul><li>c</ul></ul>"
                             "<a href='/next'>on</a><script>1</script></div><p>behind</p>");
  EXPECT_FALSE(run("GetDetailsOfTab").as_object().contains("selectionMD"));
  evaluate(tab, "getSelection().selectAllChildren(document.getElementById('s'))");
  const value details = run("GetDetailsOfTab");
  EXPECT_THAT(textOf(details, "selectionText"), StartsWith("News"));
  EXPECT_EQ(textOf(details, "selectionMD"), "\n\n## News\n\n- a **b**\n    - c\n\n[on](" + pages().url("/next") + ")");
  const auto file = intents::propertyFromJson<std::optional<intents::IntentFile>>(details.at("selectionRTFD")).value();
  EXPECT_EQ(file.filename, "selection.rtfd");
  EXPECT_THAT(file.data, AllOf(StartsWith("{\\rtf1"), HasSubstr("News"), HasSubstr(pages().url("/next"))));
  EXPECT_THAT(file.data, Not(AnyOf(HasSubstr("before"), HasSubstr("behind"))));
}

TEST_P(Catalogue, MakesNamesListsFocusesAndClosesWindows) {
  const std::size_t before = windowCount();
  pages().serve("/w", "<title>W</title>");
  const value made = run("CreateWindow", {{"name", "The \"best\" 😀"}, {"newURL", pages().url("/w")}});
  EXPECT_EQ(windowCount(), before + 1);
  eventually([&] { return snapshot()->windows.at(0).tabs.at(0).title == "W"; });

  const value second = run("CreateWindow");
  EXPECT_EQ(run("GetFrontmostWindow").at("fullID"), second.at("fullID"));
  EXPECT_EQ(runOn("FocusWindow", "targetWindow", made).at("fullID"), made.at("fullID"));
  EXPECT_EQ(run("GetFrontmostWindow").at("fullID"), made.at("fullID"));

  const value tab = runOn("OpenInTab", "targetWindow", second,
                          {{"targetSelection", "newTabInWindow"}, {"newURL", "file:///dev/null"}});
  EXPECT_STREQ(textOf(tab, "title"), "file:///dev/null");
  EXPECT_EQ(runOn("CreateTab", "targetWindow", second, {{"windowType", "specificWindow"}}).at("targetContext"),
            second.at("targetContext"));

  const value list = run("GetListOfWindows");
  EXPECT_EQ(list.as_array().size(), before + 2);
  EXPECT_EQ(list.at(0).at("fullID"), made.at("fullID")) << "windows are listed front to back";
  for (const value& window : list.as_array()) {
    if (window.at("fullID") == second.at("fullID"))
      EXPECT_EQ(window.at("tabs").as_array().size(), 3U);
  }
  const value named = run("GetListOfWindows", {{"titleFilter", "contains"}, {"title", "the \"BEST\" 😀"}});
  EXPECT_EQ(named.as_array().size(), 1U);

  for (const value* window : {&made, &second})
    EXPECT_EQ(runOn("CloseWindow", "targetWindow", *window).at("fullID"), window->at("fullID"));
  EXPECT_EQ(windowCount(), before);
  EXPECT_EQ(failureOf([&] { runOn("FocusWindow", "targetWindow", made); }), "AppleScriptRuntimeError.windowNotFound");
}

TEST_P(Catalogue, KeepsPrivateWindowsApart) {
  offerPrivateWindowsInTheMenu([&] { driver().makeWindow(WindowMode::incognito, "", limits()); });
  const value made = run("CreateWindow", {{"windowType", "privateWindow"}});
  EXPECT_EQ(made.at("isPrivate"), value(true));
  EXPECT_EQ(run("GetListOfWindows", {{"privacyFilter", "incognito"}}).as_array().size(), 1U);
  const value tabs = run("GetListOfTabs", {{"tabPrivacy", "incognito"}});
  ASSERT_EQ(tabs.as_array().size(), 1U);
  EXPECT_EQ(tabs.at(0).at("isPrivate"), value(true));
  runOn("CloseWindow", "targetWindow", made);
  EXPECT_TRUE(run("GetListOfTabs", {{"tabPrivacy", "incognito"}}).as_array().empty());
}

TEST_P(Catalogue, ClicksLinksByTheirText) {
  const TabID tab = openPage("<title>L</title><a href='#a'> News\n today </a><a href='#b'>All news of \"x\\y\"</a>");
  EXPECT_EQ(run("ClickLink", {{"label", "All news"}}), value(false));
  EXPECT_EQ(run("ClickLink", {{"label", "of \"x\\y\""}, {"linkSelection", "labelContaining"}}), value(true));
  EXPECT_EQ(text(tab, "location.hash"), "#b");
  EXPECT_EQ(run("ClickLink", {{"label", "News today"}}), value(true));
  EXPECT_EQ(text(tab, "location.hash"), "#a");
}

TEST_P(Catalogue, ASelectorThatFindsNothingOrThrowsIsNoFailure) {
  openPage("<title>N</title>");
  run("ClickElement", {{"cssSelector", "#nothing"}});
  run("ClickElement", {{"cssSelector", "a["}});
}

TEST_P(Catalogue, WaitsForAnElementThatComesLate) {
  openPage("<title>W</title><p id=hidden hidden>h</p><script>setTimeout(() => document.body.append("
           "Object.assign(document.createElement('p'), {id: 'late'})), 700)</script>");
  EXPECT_EQ(run("WaitForElement", {{"cssSelector", "#late"}}), value(true));
  EXPECT_EQ(run("WaitForElement", {{"cssSelector", "#hidden"}, {"timeout", "p02"}, {"onFailure", "returnFalse"}}),
            value(false));
  EXPECT_EQ(failureOf([&] { run("WaitForElement", {{"cssSelector", "#never"}, {"timeout", "2.0"}}); }),
            "AppleScriptRuntimeError.pageElementNotFound");
}

const char* const form = R"(<!DOCTYPE html><title>F</title><form id=f onsubmit="return false">
<input name=text><input name=email type=email><input name=number type=number><input name=password type=password>
<input name=search type=search><input name=tel type=tel><input name=url type=url><input name=date type=date>
<input name=range type=range min=0 max=10><input name=color type=color><input name=hidden type=hidden>
<input name=check type=checkbox><input name=radio type=radio value=a checked><input name=radio type=radio value=b>
<input name=file type=file><textarea name=area></textarea>
<select name=one><option value=1>1<option value=2>2</select>
<select name=many multiple><option value=1>1<option value=2>2<option value=3>3</select>
<input id="odd&quot;id"></form><script>changes = []; f.onchange = e => changes.push(e.target.name);
f.addEventListener('input', e => last = e.target.name); f.submit = () => changes.push('submit')</script>)";

TEST_P(Catalogue, FillsInEveryKindOfField) {
  const TabID tab = openPage(form);
  const auto set = [&](const std::string& field, const std::string& to, Parameters more = {}) {
    more.insert(more.end(), {{"targetField", field}, {"newValue", to}});
    return run("SetFormFieldValue", more);
  };
  const auto get = [&](const std::string& field) {
    return std::string(run("GetFormFieldValue", {{"fieldTargetSpec", field}}).as_string());
  };
  for (const auto& [field, to] : std::map<std::string, std::string>{{"text", R"(a "b" \c `d` 'e' 😀)"},
                                                                    {"email", "ann@example.test"},
                                                                    {"number", "42"},
                                                                    {"password", "päss"},
                                                                    {"search", "s"},
                                                                    {"tel", "+49"},
                                                                    {"url", "https://x.test/"},
                                                                    {"date", "2026-11-25"},
                                                                    {"range", "7"},
                                                                    {"color", "#102030"},
                                                                    {"hidden", "h"},
                                                                    {"radio", "b"},
                                                                    {"area", "one\ntwo"},
                                                                    {"one", "2"}}) {
    EXPECT_EQ(set(field, to), value(true)) << field;
    EXPECT_EQ(get(field), to) << field;
  }
  EXPECT_EQ(set("check", "YES"), value(true));
  EXPECT_EQ(get("check"), "checked");
  EXPECT_EQ(set("text", ""), value(true));
  EXPECT_EQ(get("text"), "");
  EXPECT_EQ(set("file", "/etc/passwd"), value(false));
  EXPECT_EQ(set("radio", "c"), value(false));
  EXPECT_EQ(set("nothing", "c"), value(false));
  EXPECT_EQ(get("nothing"), "");
  EXPECT_EQ(set("odd\"id", "x", {{"formFieldSelection", "elementIDAttribute"}}), value(true));
  EXPECT_EQ(text(tab, "f.elements['odd\"id'].value"), "x");
  EXPECT_EQ(set("[name=text]", "y", {{"formFieldSelection", "cssSelector"}, {"shouldFireChangeEvent", "true"}}),
            value(true));
  EXPECT_EQ(get("text"), "y");
}

TEST_P(Catalogue, FillsInAWholeFormAndSubmitsItOnce) {
  const TabID tab = openPage(form);
  EXPECT_EQ(
      run("SetFormFields", {{"inputDict", R"({"text": "t\"\\`", "check": true, "many": [1, "3"], "area": {"a": 1}})"},
                            {"shouldSubmitParentForm", "true"}}),
      value(true));
  EXPECT_EQ(text(tab, "[f.text.value, f.check.checked, f.area.value].join()"), "t\"\\`,true,{\"a\":1}");
  EXPECT_EQ(text(tab, "[...f.many.selectedOptions].map(o => o.value).join()"), "1,3");
  EXPECT_EQ(text(tab, "changes.filter(c => c == 'submit').length + ''"), "1");
  EXPECT_EQ(run("SetFormFields", {{"inputDict", R"({"text": "u", "nothing": "v"})"}}), value(false));
  EXPECT_EQ(text(tab, "f.text.value"), "u") << "all are tried";
}

TEST_P(Catalogue, RunsJavaScriptInThePage) {
  openPage("<title>J</title><iframe srcdoc='<p>in'></iframe>");
  const auto js = [&](const std::string& code) {
    return boost::json::serialize(run("RunJavascriptInTab", {{"jsCode", code}}));
  };
  EXPECT_EQ(js("return 1 + 1"), R"(["2"])");
  EXPECT_EQ(js("return [1, [2, 'drei \"\\\\ 😀']]"), R"(["1","2","drei \"\\ 😀"])");
  EXPECT_EQ(js("document.title = 'changed'"), R"([""])");
  EXPECT_EQ(js("return {a: 1}"), R"([""])");
  EXPECT_EQ(js("throw new Error('x')"), R"(["Error: x"])");
  EXPECT_EQ(js("return [frames.length, frames[0].document.body.innerText.trim(), getAllLinks().length]"),
            R"(["1","in","0"])");
  EXPECT_EQ(failureOf([&] { js("return ("); }), "JavascriptError.syntaxException");
}

TEST_P(Catalogue, PagesUnderAStrictPolicyAndPagesWithoutABodyAreDrivenToo) {
  openPage("<meta http-equiv=Content-Security-Policy content=\"default-src 'none'\"><title>C</title><p id=p>strict");
  EXPECT_EQ(boost::json::serialize(run("RunJavascriptInTab", {{"jsCode", "return p.innerText"}})), R"(["strict"])");
  EXPECT_EQ(run("WaitForElement", {{"cssSelector", "#p"}}), value(true));
  EXPECT_THAT(textOf(run("GetDetailsOfTab"), "textContent"), StartsWith("strict"));

  pages().serve("/image", "<svg xmlns='http://www.w3.org/2000/svg'><title>S</title></svg>", "image/svg+xml");
  open(pages().url("/image"));
  const value details = run("GetDetailsOfTab");
  EXPECT_THAT(textOf(details, "htmlDocument"), StartsWith("<svg"));
  EXPECT_EQ(run("GetFormFieldValue", {{"fieldTargetSpec", "x"}}), value(""));
}

TEST_P(Catalogue, AnOpenDialogAndACrashedTabAreToldAtOnce) {
  const TabID asking = openPage("<title>D</title><button onclick=\"alert('Sure?')\">b</button>");
  EXPECT_THAT(messageOf([&] { run("ClickElement", {{"cssSelector", "button"}}); }), HasSubstr("Sure?"));
  EXPECT_THAT(messageOf([&] { run("ClickElement", {{"cssSelector", "button"}}); }), HasSubstr("dialog"));
  if (!isSafari()) // whose dictionary asks the page in front for the version
    EXPECT_GE(run("GetListOfTabs").as_array().size(), 1U) << "the rest of the browser still answers";
  driver().closeTab(asking, limits());

  const TabID frail = open("data:text/html,<title>frail</title>");
  evaluate(frail, "1");
  driver().navigate(frail, "chrome://crash", limits());
  EXPECT_THAT(messageOf([&] { run("ClickElement", {{"cssSelector", "b"}}); }), HasSubstr("crash"));
}

INSTANTIATE_TEST_SUITE_P(Families, Catalogue, ::testing::Values("chromium", "safari"),
                         [](const auto& info) { return info.param; });

} // namespace
} // namespace tabwright::scripting
