// Actions in a real page, where a model proves nothing, through either family's dictionary.
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
using testsupport::failureText;
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
  TabID openPage(const std::string& body) {
    pages().serve("/page", body);
    return open(pages().url("/page"));
  }
  std::string text(TabID tab, const std::string& javascript) {
    return std::string(evaluate(tab, javascript).as_string());
  }
};

const char* textOf(const value& object, std::string_view key) {
  return object.at(key).as_string().c_str();
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

const char* const form = R"(<!DOCTYPE html><title>F</title><form id=f onsubmit="return false">
<input name=text><input name=email type=email><input name=number type=number><input name=password type=password>
<input name=search type=search><input name=tel type=tel><input name=url type=url><input name=date type=date>
<input name=range type=range min=0 max=10><input name=color type=color><input name=hidden type=hidden>
<input name=check type=checkbox><input name=radio type=radio value=a checked><input name=radio type=radio value=b>
<input name=file type=file><textarea name=area></textarea>
<select name=one><option value=1>1<option value=2>2</select>
<select name=many multiple><option value=1>1<option value=2>2<option value=3>3</select>
<input id="odd&quot;id"></form>)";

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
  EXPECT_EQ(run("SetFormFields", {{"inputDict", R"({"many": [1, "3"]})"}}), value(true));
  EXPECT_EQ(text(tab, "[...f.many.selectedOptions].map(o => o.value).join()"), "1,3");
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
  if (!isHelperRoad()) { // which nothing tells of a dialog
    const TabID asking = openPage("<title>D</title><button onclick=\"alert('Sure?')\">b</button>");
    EXPECT_THAT(failureText([&] { return run("ClickElement", {{"cssSelector", "button"}}); }), HasSubstr("Sure?"));
    EXPECT_THAT(failureText([&] { return run("ClickElement", {{"cssSelector", "button"}}); }), HasSubstr("dialog"));
    if (!isSafari()) { // whose dictionary asks the page in front for the version
      EXPECT_GE(run("GetListOfTabs").as_array().size(), 1U) << "the rest of the browser still answers";
    }
    driver().perform(CloseTab{asking}, limits());
  }

  const TabID frail = open(page("<title>frail</title>"));
  evaluate(frail, "1");
  crash(frail);
  EXPECT_THAT(failureText([&] { return run("ClickElement", {{"cssSelector", "b"}}); }), HasSubstr("crash"));
  run("ReloadTab");
  EXPECT_EQ(evaluate(frail, "document.title"), "frail") << "what its page can't do for itself";
}

INSTANTIATE_TEST_SUITE_P(Families, Catalogue, ::testing::Values("chromium", "safari"),
                         [](const auto& info) { return info.param; });

} // namespace
} // namespace tabwright::scripting
