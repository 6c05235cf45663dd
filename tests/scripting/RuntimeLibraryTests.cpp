#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptLayers.h"
#include "support/ScriptBench.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace tabwright;
using testing::HasSubstr;

/// The runtime library's handlers, as generated programs call them, against the models.
class RuntimeLibrary : public testing::TestWithParam<std::string>, protected testsupport::ScriptBench {
protected:
  RuntimeLibrary() {
    browser->addWindow({{"A", "https://a.test/"}, {"B", "https://b.test/"}});
    if (isChromium())
      browser->addWindow({});
    browser->addWindow({{"P", "https://p.test/"}}, scripting::WindowMode::incognito);
    browser->page = [](scripting::TabID, const std::string& javascript) -> boost::json::value {
      return javascript.find("userAgent") != std::string::npos ? "156" : nullptr;
    };
    desktop->add(9, "Safari", "com.apple.safari", {"A", "Private Browsing"});
  }

  static bool isChromium() { return GetParam() == "chromium"; }

  /// Runs lines as the body of a program for the browser of this test.
  applescript::Value result(const std::string& lines) {
    const std::string id = isChromium() ? "org.chromium.chromium" : "com.apple.safari";
    const std::string program = engine::scriptLayers(id).fill({{"ARGKEYS", ""},
                                                               {"MAIN_RECEIVER_ID", id},
                                                               {"BROWSER_BUNDLE_ID", id},
                                                               {"APPLESCRIPT", engine::preparedBody(lines)}});
    try {
      const auto script = interpreter.compile(program);
      return interpreter.call(*script, "runWithVariables");
    } catch (const applescript::ScriptError& error) {
      return fmt::format("error {}: {} at {}", error.number(), error.message(),
                         error.range() ? program.substr(error.range()->offset, error.range()->length) : "?");
    }
  }
  std::string perform(const std::string& lines) { return applescript::sourceForm(result(lines)); }

  /// The JSON that the library makes of an expression, without its layout.
  std::string json(const std::string& expression) {
    const applescript::Value value = result("return my jsonStringify(" + expression + ")");
    boost::json::error_code error;
    const auto parsed = boost::json::parse(*value.text(), error);
    return error ? *value.text() : boost::json::serialize(parsed);
  }
};

TEST_P(RuntimeLibrary, WrapsResultsAndVersions) {
  EXPECT_EQ(perform("return my success(true)"), R"({true, "156", "true"})");
  EXPECT_EQ(perform("return my failure(5)"), R"({false, "156", 5})");
  EXPECT_EQ(perform("set x to 1"), R"({false, "156", 0})");
  browser->change([](auto& windows) { windows.clear(); });
  EXPECT_EQ(perform("return my success({})"), "{true, \"\", \"[\n\n]\"}");
}

TEST_P(RuntimeLibrary, WritesNothingsAsJSONNull) {
  EXPECT_EQ(json("{a:null, b:{c:null, d:\"null\"}, e:missing value}"),
            R"({"a":null,"b":{"c":null,"d":"null"},"e":null})");
  EXPECT_EQ(json("{null, {x:null}, {null, 1}}"), R"([null,{"x":null},[null,1]])");
  EXPECT_THAT(json("{a:{null, 1}}"), HasSubstr("Invalid type in JSON write"));
  EXPECT_EQ(perform("return my splitString(\"12345:3\", \":\")"), R"({"12345", "3"})");
}

TEST_P(RuntimeLibrary, LooksPastDeveloperToolsAtTheFront) {
  browser->addWindow({});
  browser->change([](auto& windows) { std::ranges::rotate(windows, windows.end() - 1); });
  EXPECT_EQ(perform("return item 2 of my getFrontVars() as text"), R"("101")");
  EXPECT_EQ(perform("return my success(1)"), R"({true, "156", "1"})");
}

INSTANTIATE_TEST_SUITE_P(Families, RuntimeLibrary, testing::Values("chromium", "safari"),
                         [](const auto& info) { return info.param; });

TEST(GeneratedScripts, FindTheFrontmostBrowser) {
  testsupport::ScriptBench bench;
  bench.desktop->add(1, "Editor", "org.editor");
  bench.desktop->add(2, "Chromium", "org.Chromium.chromium");
  const std::vector<std::string> ids{"com.apple.safari", "org.chromium.chromium"};
  const auto script = bench.interpreter.compile(engine::AppleScriptSnippets::frontmostScriptText(ids));
  EXPECT_EQ(applescript::sourceForm(bench.interpreter.call(*script, "runWithVariables")),
            R"({true, "", "\"org.chromium.chromium\""})");
  EXPECT_THAT(bench.desktop->calls, testing::ElementsAre("hide 1", "show 1", "activate 1"));
}

TEST(GeneratedScripts, TriggerThePermissionDialogs) {
  testsupport::ScriptBench bench;
  bench.browser->addWindow({{"A", "https://a.test/"}});
  bench.desktop->add(1, "Editor", "org.editor");
  bench.desktop->add(2, "Chromium", "org.chromium.chromium");
  bench.desktop->menus = {{{}, {{"File", true, true}}}, {{0}, {{"New", true, false}}}};
  const auto script = bench.interpreter.compile(
      engine::AppleScriptSnippets::permissionTriggerScript("org.chromium.chromium", "Tabwright"));
  EXPECT_EQ(applescript::sourceForm(bench.interpreter.call(*script, "runWithVariables")), R"({true, "", "true"})");
  EXPECT_THAT(bench.desktop->calls, testing::ElementsAre("activate 2"));
  EXPECT_EQ(bench.ownActivations, 1);
  EXPECT_EQ(bench.browser->snapshotsAsked, 1); // it went through to the last step
}

} // namespace
