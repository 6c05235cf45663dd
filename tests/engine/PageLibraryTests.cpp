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
        querySelector: selector => fields[selector] ?? null,
        querySelectorAll: selector => fields[selector] ?? [],
        execCommand: (...command) => calls.push(command.join(" ")),
      };
      var window = globalThis;
      class Event { constructor(name) { this.name = name; } }
      const input = (type, more = {}) => ({
        tagName: "INPUT", type, closest: () => form, focus() { calls.push("focus"); },
        dispatchEvent(event) { calls.push("event " + event.name); }, ...more });
    )");
  }

  std::string value(const std::string& code) { return page.evaluate(code); }

  testsupport::JavaScriptContext page;
};

TEST_F(PageLibrary, IsOneLineOfTwelveFunctionsThatAScriptsCleanUpLeavesAlone) {
  const std::string text(pageLibrary());
  EXPECT_TRUE(text.starts_with("\"use strict\";function getAllLinks()"));
  EXPECT_EQ(text.find('\n'), std::string::npos);
  EXPECT_EQ(text.find("//"), std::string::npos);
  EXPECT_EQ(preparedBody(text), text + "\n");
  for (const char* name : {"getAllLinks", "getAllImages", "cssSelectorFor", "getFormFieldValue", "setFormFieldValue",
                           "setFormFields", "clickLinkLabelled", "clickPageElement", "scrollToPageElement",
                           "waitForPageElement", "getSelectionAsHTML", "getShownHTML"})
    EXPECT_EQ(value(std::string("typeof ") + name), "\"function\"") << name;
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

TEST_F(PageLibrary, ListsLinksAndImages) {
  value(R"(fields = { "a[href]": [{ innerText: " x\n", href: "https://a/" }],
                      img: [{ src: "s", alt: "", clientWidth: 0, width: 0, clientHeight: 4, height: 9 }] };
           window.getComputedStyle = () => ({ width: "12.5px" });)");
  EXPECT_EQ(value("getAllLinks()"), R"([{"text":"x","url":"https://a/"}])");
  EXPECT_EQ(value("getAllImages()"), R"([{"src":"s","alt":"","width":12.5,"height":4}])");
}

} // namespace
} // namespace tabwright::engine
