// The programs of the actions on a page, run in the interpreter against a browser in memory whose page runs their jobs,
// in both families.
#include "support/InterpretedActionBench.h"
#include "support/ModelPage.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

namespace tabwright::actions {
namespace {

using host::ParameterTexts;
using Texts = boost::json::array;

class PageEffects : public testing::TestWithParam<std::string>, protected testsupport::InterpretedActionBench {
protected:
  PageEffects() {
    world.browser->addWindow({{"A", "https://a.test/"}, {"B", "https://b.test/"}});
    world.browser->page = page.answers();
  }

  boost::json::value run(const std::string& action, ParameterTexts parameters) {
    parameters.emplace_back("targetContext", GetParam());
    return perform(action, std::move(parameters));
  }
  std::string failure(const std::string& action, ParameterTexts parameters) {
    parameters.emplace_back("targetContext", GetParam());
    return failureOf(action, std::move(parameters));
  }

  boost::json::value setField(const std::string& value, ParameterTexts more = {}) {
    more.insert(more.end(), {{"targetField", "f"}, {"newValue", value}, {"formFieldSelection", "cssSelector"}});
    return run("SetFormFieldValue", std::move(more));
  }
  boost::json::value setFields(const std::string& json, ParameterTexts more = {}) {
    more.insert(more.end(), {{"inputDict", json}, {"formFieldsSelection", "cssSelector"}});
    return run("SetFormFields", std::move(more));
  }
  boost::json::value javascript(const std::string& code) { return run("RunJavascriptInTab", {{"jsCode", code}}); }
  std::string applescript(const std::string& lines) {
    return std::string(run("RunAppleScript", {{"script", lines}}).as_string());
  }

  testsupport::ModelPage page;
};

INSTANTIATE_TEST_SUITE_P(Families, PageEffects, testing::Values("chromium", "safari"),
                         [](const auto& family) { return family.param; });

// Texts that would come to harm if one of the layers that carry them escaped too little or too much.
const std::string awkward[]{
    "",
    "\"quoted\" 'twice' `thrice`",
    "\\ \\\\ \\n \\\" \\` \\",
    "a\nb\tc",
    "</script><!-- ]]> -->",
    "$ {x} $$ \\\\` ${'",
    "ü 😀 \u2028\u2029 e\u0301 \u200B",
    "*/ // /* return [ ] ); } catch (e) { }",
    "\" & (do shell script \"x\") & \"",
    "__JS__ __RESULT__ __APPLESCRIPT__ «data utxt0041» ¬ --",
};

TEST_P(PageEffects, ValuesReachAFieldUnchanged) {
  page.run("fields.f = input('text');");
  for (const std::string& value : awkward) {
    if (value.find("${") != std::string::npos)
      continue; // means something to the page
    EXPECT_EQ(setField(value), true) << value;
    EXPECT_EQ(page.run("fields.f.value"), boost::json::value(value));
    EXPECT_EQ(run("GetFormFieldValue", {{"fieldTargetSpec", "f"}, {"formFieldSelection", "cssSelector"}}),
              boost::json::value(value));
  }
}

TEST_P(PageEffects, AValueIsATemplateOfThePage) {
  page.run("fields.f = input('text');");
  EXPECT_EQ(setField("${1 + 1} $1"), true);
  EXPECT_EQ(page.run("fields.f.value"), "2 $1");
  EXPECT_EQ(setField("\\${1 + 1}"), true);
  EXPECT_EQ(page.run("fields.f.value"), "\\2") << "a backslash stands for itself";
  EXPECT_EQ(setField("${nothing}"), false) << "an exception is an answer that isn't true";
}

TEST_P(PageEffects, LinesOfAValueAreCleanedUpLikeThoseOfAnyScript) {
  page.run("fields.f = input('text');");
  EXPECT_EQ(setField("  a\n\n  b  \n-- c\nd"), true);
  EXPECT_EQ(page.run("fields.f.value"), "  a\nb\nd");
}

TEST_P(PageEffects, DocumentsReachTheFieldsUnchanged) {
  for (const std::string& value : awkward) {
    page.load();
    page.run("fields.f = input('text');");
    EXPECT_EQ(setFields(boost::json::serialize(boost::json::object{{"f", value}})), true) << value;
    EXPECT_EQ(page.run("fields.f.value"), boost::json::value(value));
    // … and as a key.
    const std::string key = "k" + value;
    page.run("fields[" + boost::json::serialize(boost::json::value(key)) + "] = input('text');");
    EXPECT_EQ(setFields(boost::json::serialize(boost::json::object{{key, "x"}})), true) << key;
    EXPECT_EQ(page.run("fields[" + boost::json::serialize(boost::json::value(key)) + "].value"), "x");
  }
}

TEST_P(PageEffects, DocumentsHoldMoreThanTexts) {
  page.run(R"(for (const name of "abcdef") { fields[name] = input("text"); }
              var options = ["1", "2", "3"].map(value => ({ value, selected: value === "1" }));
              fields.s = { ...input(), tagName: "SELECT", querySelectorAll: () => options };
              fields.c = input("checkbox");)");
  EXPECT_EQ(
      setFields(R"({"a": 9007199254740991, "b": 1.50, "c": true, "d": null, "e": {"x": [1, "/"]}, "s": [2, "3"]})"),
      true);
  EXPECT_EQ(page.run("['a', 'b', 'd', 'e'].map(name => fields[name].value)"),
            (Texts{"9007199254740991", "1.5", "null", R"({"x":[1,"/"]})"}));
  EXPECT_EQ(page.run("[fields.c.checked, ...options.map(option => option.selected)]"),
            (Texts{true, false, true, true}));
}

TEST_P(PageEffects, AKeyOfPrototypesIsNoFieldAndNoHarm) {
  page.run("fields.__proto__ = null; fields.f = input('text');");
  EXPECT_EQ(setFields(R"({"__proto__": {"x": 1}, "f": {"__proto__": {"x": 1}}, "__proto__": null})"), true);
  EXPECT_EQ(page.run("fields.f.value"), "{}");
  EXPECT_EQ(page.run("({}).x ?? 'clean'"), "clean");
}

TEST_P(PageEffects, FieldsAreFoundByNameIDOrSelector) {
  page.run(R"(fields['[name="a\\"b"]'] = input("text", { value: "by name" });
              fields['[id="a\\"b"]'] = input("text", { value: "by id" });
              fields['a"b'] = input("text", { value: "by selector" });)");
  const auto get = [&](const char* strategy) {
    return run("GetFormFieldValue", {{"fieldTargetSpec", "a\"b"}, {"formFieldSelection", strategy}});
  };
  EXPECT_EQ(get("elementNameAttribute"), "by name");
  EXPECT_EQ(get("elementIDAttribute"), "by id");
  EXPECT_EQ(get("cssSelector"), "by selector");
  EXPECT_EQ(run("SetFormFields", {{"inputDict", R"({"a\"b": "x"})"}, {"formFieldsSelection", "elementIDAttribute"}}),
            true);
  EXPECT_EQ(get("elementIDAttribute"), "x");
}

TEST_P(PageEffects, FieldsThatAreMissingOrCannotBeSetGiveFalse) {
  page.run("fields.f = input('file');");
  EXPECT_EQ(run("GetFormFieldValue", {{"fieldTargetSpec", "none"}}), "");
  EXPECT_EQ(setField("x", {{"pauseAfterSucessInSeconds", "p40"}}), false);
  EXPECT_EQ(run("SetFormFieldValue", {{"targetField", "none"}, {"newValue", "x"}}), false);
  EXPECT_EQ(setFields(R"({"none": "x", "f": "y"})", {{"pauseAfterSucessInSeconds", "p40"}}), false);
  EXPECT_THAT(actions.steps.back(), testing::StartsWith("notice: Not every field was set")) << "no pause";
}

TEST_P(PageEffects, AFormIsSubmittedOnceBehindItsLastField) {
  page.run("fields.a = input('text'); fields.b = input('text');");
  const ParameterTexts both{{"shouldFireChangeEvent", "true"}, {"shouldSubmitParentForm", "true"}};
  EXPECT_EQ(setFields(R"({"a": "1", "none": "2", "b": "3"})", both), false);
  EXPECT_EQ(page.run("done"), (Texts{"change", "change", "submit"}));
  page.run("done = [];");
  EXPECT_EQ(setFields(R"({"a": "1", "none": "2"})", both), false);
  EXPECT_EQ(page.run("done"), (Texts{"change"}));
}

TEST_P(PageEffects, EmptyDocumentsSetEverythingTheyName) {
  EXPECT_EQ(setFields("{}", {{"pauseAfterSucessInSeconds", "p05"}}), true);
  EXPECT_EQ(actions.steps.back(), "sleep 0.5");
  EXPECT_EQ(setFields("[]"), true);
  page.run("fields['0'] = input('text');");
  EXPECT_EQ(setFields(R"(["x"])"), true) << "a list has its indices as keys";
  EXPECT_EQ(page.run("fields['0'].value"), "x");
}

TEST_P(PageEffects, LinksAreClickedByTheirText) {
  page.run(R"(links = [link(" A \"b\" "), link("A"), link("C\\")];)");
  EXPECT_EQ(run("ClickLink", {{"label", " A"}}), true);
  EXPECT_EQ(run("ClickLink", {{"label", "\"b\""}, {"linkSelection", "labelContaining"}}), true);
  EXPECT_EQ(run("ClickLink", {{"label", "\\"}, {"linkSelection", "labelContaining"}}), true);
  EXPECT_EQ(run("ClickLink", {{"label", "a"}}), false);
  EXPECT_EQ(page.run("done"), (Texts{"click A", "click  A \"b\" ", "click C\\"}));
}

TEST_P(PageEffects, ElementsAreClickedAndScrolledTo) {
  page.run("fields.a = input('text');");
  EXPECT_EQ(run("ClickElement", {{"cssSelector", "a"}}), nullptr);
  EXPECT_EQ(run("ScrollToElement", {{"cssSelector", "a"}}), nullptr);
  for (const char* selector : {"none", "!"}) {
    EXPECT_EQ(run("ClickElement", {{"cssSelector", selector}}), nullptr);
    EXPECT_EQ(run("ScrollToElement", {{"cssSelector", selector}}), nullptr);
  }
  EXPECT_EQ(page.run("done"), (Texts{"click", "scroll instant center"}));
}

TEST_P(PageEffects, ElementsAreWaitedFor) {
  page.run(R"(fields.a = input("text"); fields.h = input("text", { hidden: true });
              Object.defineProperty(fields, "later", { get: () => now >= 1500 ? fields.a : null });)");
  EXPECT_EQ(run("WaitForElement", {{"cssSelector", "a"}, {"timeout", "p00"}}), true);
  EXPECT_EQ(run("WaitForElement", {{"cssSelector", "later"}, {"timeout", "p02"}}), true);
  EXPECT_EQ(page.run("now"), 1500);
  EXPECT_EQ(failure("WaitForElement", {{"cssSelector", "h"}, {"timeout", "p02"}}), "pageElementNotFound");
  EXPECT_EQ(run("WaitForElement", {{"cssSelector", "!"}, {"onFailure", "returnFalse"}}), false);
  page.run("document.readyState = 'loading'; now = 0;");
  EXPECT_EQ(run("WaitForElement", {{"cssSelector", "a"}, {"timeout", "p04"}, {"onFailure", "returnFalse"}}), false);
  EXPECT_EQ(page.run("now"), 4250);
}

TEST_P(PageEffects, JavascriptGivesAFlatListOfTexts) {
  EXPECT_EQ(javascript("return 1 + 1"), (Texts{"2"}));
  EXPECT_EQ(javascript("return [1, [2, 3]]"), (Texts{"1", "2", "3"}));
  EXPECT_EQ(javascript("let unused = 1"), (Texts{""}));
  EXPECT_EQ(javascript("return null"), (Texts{""}));
  EXPECT_EQ(javascript("return {a: 1}"), (Texts{""}));
  EXPECT_EQ(javascript("return [false, 0, '', undefined]"), (Texts{"false", "0", "", ""}));
  EXPECT_EQ(javascript("throw new Error('x')"), (Texts{"Error: x"}));
  EXPECT_EQ(javascript("return cssSelectorFor('x', 'nothing')"), (Texts{"Error: Invalid target strategy"}));
  EXPECT_EQ(javascript("let n = 1;\n--n; // a line like a comment\nreturn n"), (Texts{"1"}));
  EXPECT_EQ(javascript("return '__JS__ __RESULT__ __POLL_COUNT__'"), (Texts{"__JS__ __RESULT__ __POLL_COUNT__"}));
  EXPECT_EQ(javascript("return cssSelectorFor('a', 'cssSelector')"), (Texts{"a"}));
  EXPECT_EQ(javascript("return Promise.resolve(`\"\\\\\n😀`)"), (Texts{"\"\\\n😀"}));
  EXPECT_EQ(failure("RunJavascriptInTab", {{"jsCode", "return []"}}), "unableToParseJS");
}

TEST_P(PageEffects, JavascriptWhoseResultHidesSomethingIsToldOf) {
  const auto told = [&](const std::string& code) {
    actions.steps.clear();
    javascript(code);
    const std::string last = actions.steps.back();
    return last.starts_with("notice: ") ? last.substr(8, last.find_first_of(":.,", 8) - 8) : "";
  };
  EXPECT_EQ(told("throw new TypeError('x')"), "The result reads as an exception that the code threw");
  EXPECT_EQ(told("return {a: 1}"), "The code returned an empty text");
  EXPECT_EQ(told("document.title"), "The code returned nothing");
  for (const char* plain :
       {"unused = 1", "return null", "return 'Error'", "return 'My Error: x'", "return ['Error: x', 2]"})
    EXPECT_EQ(told(plain), "") << plain;
  try {
    javascript("return []");
    ADD_FAILURE();
  } catch (const platform::Failure& failure) {
    ASSERT_TRUE(failure.cause());
    EXPECT_EQ(failure.cause()->identity.caseName, "emptyList");
  }
}

TEST_P(PageEffects, JavascriptWithAMistakeInItsSyntaxNeverCounts) {
  for (const char* code : {"return (", "await 1", "function("}) {
    EXPECT_EQ(failure("RunJavascriptInTab", {{"jsCode", code}}), "syntaxException") << code;
    EXPECT_EQ(actions.steps, std::vector<std::string>{}) << code;
  }
  EXPECT_EQ(world.browser->evaluations, 0);
}

TEST_P(PageEffects, JobsEndWithThePageTheWindowsOrTheirTime) {
  EXPECT_EQ(failure("RunJavascriptInTab", {{"jsCode", "return new Promise(() => {})"}}), "frontAppIsNotABrowser");

  world.browser->page = [this](scripting::TabID tab, const std::string& code) {
    const boost::json::value answer = page.answers()(tab, code);
    if (code.find("async function") != std::string::npos)
      page.load();
    return answer;
  };
  page.run("fields.a = input('text');");
  EXPECT_EQ(failure("ClickElement", {{"cssSelector", "a"}}), "pageLoadDuringExecution");

  world.browser->change([](auto& windows) { windows.clear(); });
  EXPECT_EQ(failure("GetFormFieldValue", {{"fieldTargetSpec", "a"}}), "noOpenWindows");
}

TEST_P(PageEffects, AppleScriptGivesItsReturnValueAsJSON) {
  const auto json = [&](const std::string& lines) { return boost::json::parse(applescript(lines)); };
  EXPECT_EQ(json(""), (Texts{}));
  EXPECT_EQ(json("set RETURN_VALUE to {a:1, b:\"\\\"\"}"), (boost::json::object{{"a", 1}, {"b", "\""}}));
  EXPECT_EQ(json("-- of the browser\nset RETURN_VALUE to URL of tab 2 of front window"), "https://b.test/");
  EXPECT_EQ(json("set RETURN_VALUE to my splitString(\"a:b\", \":\") -- a handler of the library"), (Texts{"a", "b"}));
  EXPECT_EQ(json("repeat with n from 1 to 3\nset end of RETURN_VALUE to n\nend repeat"), (Texts{1, 2, 3}));
}

TEST_P(PageEffects, AppleScriptMayEndItselfInTheTriple) {
  EXPECT_EQ(failure("RunAppleScript", {{"script", "return failure(5)"}}), "tabNotFound");
  EXPECT_EQ(applescript("return success({returnValue: \"x\"})"), "x");
  EXPECT_EQ(failure("RunAppleScript", {{"script", "return success({})"}}), "unableToDecodeJSON");
  EXPECT_EQ(failure("RunAppleScript", {{"script", "return 1"}}), "malformedScriptResult");
}

TEST_P(PageEffects, AppleScriptCountsWhateverIsInIt) {
  for (const char* script : {"set x to", "error \"no\" number 7", "set RETURN_VALUE to current date"}) {
    actions.steps.clear();
    EXPECT_THROW(run("RunAppleScript", {{"script", script}}), platform::Failure) << script;
    EXPECT_EQ(actions.steps, (std::vector<std::string>{"schedule", "count", "run"})) << script;
  }
}

} // namespace
} // namespace tabwright::actions
