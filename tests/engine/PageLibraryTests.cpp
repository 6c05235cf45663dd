// The compacted text runs in JavaScriptCore over a few stand-in objects: what is tried is the logic, not a document.
#include "engine/PageLibrary.h"
#include "engine/ScriptLayers.h"
#include "support/JavaScriptContext.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::engine {
namespace {

class PageLibrary : public testing::Test {
protected:
  PageLibrary() {
    page.evaluate(std::string(pageLibrary()));
    page.evaluate(R"(
      var calls = [], fields = {};
      var form = { submit() { calls.push("submit"); } };
      var document = {
        readyState: "complete",
        querySelector: selector => fields[selector] ?? null,
        querySelectorAll: selector => fields[selector] ?? [],
        execCommand: (...command) => calls.push(command.join(" ")),
      };
      var window = globalThis;
      class Event { constructor(name) { this.name = name; } }
      class PointerEvent extends Event {}
      class HTMLElement {}
      const input = (type, more = {}) => ({
        tagName: "INPUT", type, closest: () => form, focus() { calls.push("focus"); },
        dispatchEvent(event) { calls.push("event " + event.name); }, ...more });
    )");
  }

  std::string value(const std::string& code) { return page.evaluate(code); }

  testsupport::JavaScriptContext page;
};

TEST_F(PageLibrary, IsOneLineOfElevenFunctionsThatAScriptsCleanUpLeavesAlone) {
  const std::string text(pageLibrary());
  EXPECT_TRUE(text.starts_with("\"use strict\";function getAllLinks()"));
  EXPECT_EQ(text.find('\n'), std::string::npos);
  EXPECT_EQ(text.find("//"), std::string::npos);
  EXPECT_EQ(preparedBody(text), text + "\n");
  for (const char* name :
       {"getAllLinks", "getAllImages", "cssSelectorFor", "getFormFieldValue", "setFormFieldValue", "setFormFields",
        "clickLinkLabelled", "clickPageElement", "scrollToPageElement", "waitForPageElement", "getSelectionAsHTML"})
    EXPECT_EQ(value(std::string("typeof ") + name), "\"function\"") << name;
}

TEST_F(PageLibrary, MakesSelectors) {
  EXPECT_EQ(value(R"(cssSelectorFor('a"b\\', "elementNameAttribute"))"), R"("[name=\"a\\\"b\\\"]")");
  EXPECT_EQ(value(R"(cssSelectorFor("x", "elementIDAttribute"))"), R"("[id=\"x\"]")");
  EXPECT_EQ(value(R"(cssSelectorFor('a[href="x"]', "cssSelector"))"), R"("a[href=\"x\"]")");
  EXPECT_EQ(value(R"(try { cssSelectorFor("x", "") } catch (e) { e.toString() })"),
            R"("Error: Invalid target strategy")");
}

TEST_F(PageLibrary, ReadsFormFields) {
  value(R"(fields = { a: input("text", { value: 5 }), b: input("checkbox", { checked: true }),
                      c: input("radio", { name: "r", closest: () => ({ querySelector: s => groups[s] }) }) };
           var groups = { '[name="r"]:checked': { value: "two" } };)");
  EXPECT_EQ(value(R"(["a", "b", "c", "none"].map(s => getFormFieldValue(s, "cssSelector")))"),
            R"(["5","checked","two",""])");
  EXPECT_EQ(value(R"(fields.b.checked = false; groups = {}; ["b", "c"].map(s => getFormFieldValue(s, "cssSelector")))"),
            R"(["unchecked",""])");
}

TEST_F(PageLibrary, SetsInputsByTheirType) {
  value(R"(const set = (field, newValue, ...more) => {
             fields = { f: field }; calls = [];
             return [setFormFieldValue("f", "cssSelector", newValue, ...more), field.value, field.checked, calls];
           };)");
  EXPECT_EQ(value(R"(set(input("email"), "x", true, true))"),
            R"([true,null,null,["focus","selectAll","insertText false x","event change","submit"]])");
  EXPECT_EQ(value(R"(set(input("text"), { a: 1 }))"),
            R"([true,null,null,["focus","selectAll","insertText false {\"a\":1}"]])");
  EXPECT_EQ(value(R"(set(input("date"), "2001-01-01"))"), R"([true,"2001-01-01",null,[]])");
  EXPECT_EQ(
      value(R"([set(input("checkbox"), "YES")[2], set(input("checkbox"), "2")[2], set(input("checkbox"), true)[2]])"),
      "[true,false,true]");
  EXPECT_EQ(value(R"(set(input("file"), "x", true, true))"), "[false,null,null,[]]");
  EXPECT_EQ(value(R"(set({ ...input(), tagName: "DIV" }, 7, true))"), R"([true,"7",null,["event change"]])");
  EXPECT_EQ(value(R"(set({ ...input(), tagName: "TEXTAREA" }, "t")[3].length)"), "3");
  EXPECT_EQ(value(R"(setFormFieldValue("none", "cssSelector", "x"))"), "false");
}

TEST_F(PageLibrary, ChecksTheRadioButtonOfTheValue) {
  value(R"(var buttons = [{ value: "1" }, { value: "2" }];
           fields = { f: input("radio", { name: "r", closest: () => ({
             querySelectorAll: s => s === '[name="r"]' ? buttons : [] }) }) };)");
  EXPECT_EQ(value(R"([setFormFieldValue("f", "cssSelector", 2, true), buttons, calls])"),
            R"([true,[{"value":"1"},{"value":"2","checked":true}],["event change"]])");
  EXPECT_EQ(value(R"(calls = []; [setFormFieldValue("f", "cssSelector", "3", true), calls])"), "[false,[]]");
}

TEST_F(PageLibrary, SelectsAllOptionsOfTheListAndClearsTheOthers) {
  value(R"(var options = ["1", "2", "3"].map(value => ({ value, selected: value === "1" }));
           fields = { f: { ...input(), tagName: "SELECT", querySelectorAll: () => options } };)");
  EXPECT_EQ(value(R"([setFormFieldValue("f", "cssSelector", [2, ["3"]]), options.map(o => o.selected)])"),
            "[true,[false,true,true]]");
}

TEST_F(PageLibrary, SubmitsAMapOfFieldsOnceBehindTheLast) {
  value(R"(const names = Object.fromEntries(["a", "b", "c"].map(n => [`[name="${n}"]`, input("text")]));
           var map = { a: "1", b: "2", c: "3" };)");
  const std::string submits = R"([setFormFields(map, "elementNameAttribute", false, true),
                                  calls.filter(c => c === "submit").length, calls.at(-1)])";
  EXPECT_EQ(value("fields = names;" + submits), R"([true,1,"submit"])");
  EXPECT_EQ(value(R"(delete names['[name="b"]']; calls = [];)" + submits), R"([false,1,"submit"])");
  EXPECT_EQ(value(R"(delete names['[name="c"]']; calls = [];)" + submits), R"([false,0,"insertText false 1"])");
}

TEST_F(PageLibrary, ClicksTheFirstLinkOfALabel) {
  value(R"(var link = text => ({ innerText: text, dispatchEvent(event) {
             calls.push([text, event instanceof PointerEvent, event.name]); } });
           fields = { "a[href]": [link("Read more"), link(" more "), link("more")] };)");
  EXPECT_EQ(
      value(R"([clickLinkLabelled(" more "), clickLinkLabelled("more", true), clickLinkLabelled("More"), calls])"),
      R"([true,true,false,[["Read more",true,"click"],[" more ",true,"click"]]])");
}

TEST_F(PageLibrary, ListsLinksAndImages) {
  value(R"(fields = { "a[href]": [{ innerText: " x\n", href: "https://a/" }],
                      img: [{ src: "s", alt: "", clientWidth: 0, width: 0, clientHeight: 4, height: 9 }] };
           window.getComputedStyle = () => ({ width: "12.5px" });)");
  EXPECT_EQ(value("getAllLinks()"), R"([{"text":"x","url":"https://a/"}])");
  EXPECT_EQ(value("getAllImages()"), R"([{"src":"s","alt":"","width":12.5,"height":4}])");
}

TEST_F(PageLibrary, WaitsForAVisibleElementAsLongAsItIsTold) {
  value(R"(var now = 0, waits = 0, onWait = () => {}, result;
           Date.now = () => now;
           var setTimeout = (resume, milliseconds) => { now += milliseconds; onWait(++waits); resume(); };
           const waited = seconds => { now = waits = 0; waitForPageElement("e", seconds).then(r => result = r); };
           const element = hidden => Object.assign(new HTMLElement(), { hidden });)");
  value("fields = { e: element(false) }; waited(1)");
  EXPECT_EQ(value("[result, waits]"), "[true,0]");
  value("fields = { e: element(true) }; waited(1)");
  EXPECT_EQ(value("[result, waits]"), "[false,5]");
  value("fields = {}; onWait = count => { if (count === 3) fields.e = element(false); }; waited(1)");
  EXPECT_EQ(value("[result, waits]"), "[true,3]");
  value("document.readyState = 'loading'; onWait = () => {}; waited(1)");
  EXPECT_EQ(value("[result, waits]"), "[false,5]");
}

} // namespace
} // namespace tabwright::engine
