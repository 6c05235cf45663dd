// The menu actions from parameters to pressed items, over an application in memory.
#include "support/ActionBench.h"
#include "support/ModelMenus.h"

#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::actions {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testsupport::ModelItem;

class MenuActions : public testing::Test {
protected:
  MenuActions() {
    const std::vector<ModelItem> menus{{"File", {{"Open"}, {"Save As…"}, {"Reload", {}, false}}},
                                       {"View", {{"Hide Toolbar"}, {"Zoom", {{"In"}, {"Out"}}}}}};
    bench.workspace.accessibility.all[7] = testsupport::applicationWithMenus(menus, testsupport::Toolkit::gtk);
    bench.workspace.run(5, "org.example.Viewer", "Viewer");
    bench.workspace.run(7, "org.example.Editor", "Editor");
  }

  boost::json::value perform(const std::string& name, host::ParameterTexts parameters) {
    if (name != "TestMenuItemForX")
      parameters.emplace_back("targetContext", "org.example.Editor");
    return bench.perform(name, std::move(parameters));
  }
  /// Path of the item that an action yields; "null" for none.
  std::string pathOf(const std::string& name, host::ParameterTexts parameters) {
    const boost::json::value value = perform(name, std::move(parameters));
    return value.is_null() ? "null" : std::string(value.at("path").as_string());
  }
  std::string failure(const std::string& name, host::ParameterTexts parameters) {
    try {
      perform(name, std::move(parameters));
    } catch (const platform::Failure& failure) {
      return failure.identity().caseName + (failure.cause() ? ": " + failure.cause()->sentence : "");
    }
    return "none";
  }

  testsupport::ActionBench bench;
  std::vector<std::string>& pressed = bench.workspace.accessibility.pressed;
};

TEST_F(MenuActions, FindByWhateverTheCallerGave) {
  EXPECT_EQ(pathOf("GetMenuItemReference", {{"title", "Save As..."}}), "File > Save As…");
  EXPECT_EQ(pathOf("GetMenuItemReference",
                   {{"title", "^zoom$"}, {"titleFilterSelection", "regex"}, {"isFilterCaseInsensitive", "true"}}),
            "View > Zoom");
  EXPECT_EQ(pathOf("GetMenuItemReference", {{"path", "View>Zoom > Out"}}), "View > Zoom > Out");
  EXPECT_EQ(
      pathOf("GetMenuItemReference", {{"mainMenuItem", "View"}, {"pathSegment1", "Zoom"}, {"pathSegment3", "In"}}),
      "View > Zoom > In");
  EXPECT_THAT(pressed, ElementsAre());
  EXPECT_THAT(bench.workspace.deeds, Contains("activate 7")) << "also for an action that only reads";
  EXPECT_THAT(bench.steps,
              ElementsAre("schedule", "count", "schedule", "count", "schedule", "count", "schedule", "count"));
}

TEST_F(MenuActions, PressWhatAReferenceNames) {
  const auto reference = perform("GetMenuItemReference", {{"title", "Open"}});
  EXPECT_EQ(
      boost::json::serialize(reference),
      R"({"path":"File > Open","pathSegments":["File","Open"],"app":{"id":"org.example.editor","name":"Editor"}})");
  EXPECT_EQ(perform("TestMenuItemForX", {{"menuItem", boost::json::serialize(reference)}}), true);
  EXPECT_EQ(perform("SelectMenuItem", {{"menuItem", boost::json::serialize(reference)}, {"postActionDelay", "0.5"}}),
            reference);
  EXPECT_THAT(pressed, ElementsAre(HasSubstr("Open")));
  EXPECT_EQ(bench.steps.back(), "sleep 0.5");
}

TEST_F(MenuActions, PressADisabledItemAllTheSame) {
  EXPECT_EQ(pathOf("SelectMenuItem", {{"path", "File > Reload"}}), "File > Reload");
  EXPECT_THAT(pressed, ElementsAre(HasSubstr("Reload")));
  EXPECT_THAT(bench.steps, testing::Not(Contains(testing::StartsWith("sleep"))));
}

TEST_F(MenuActions, OfTwoItemsTakeTheFirstThatIsEnabled) {
  const auto chosen = [&](const char* first, const char* second) {
    return pathOf("SelectMenuItemEitherOr",
                  {{"title1", first}, {"title2", second}, {"errorHandlingOption", "returnNothing"}});
  };
  EXPECT_EQ(chosen("Open", "Hide Toolbar"), "File > Open");
  EXPECT_EQ(chosen("Reload", "Hide Toolbar"), "View > Hide Toolbar");
  EXPECT_EQ(chosen("Nowhere", "Hide Toolbar"), "View > Hide Toolbar");
  EXPECT_EQ(chosen("Open", "Nowhere"), "File > Open");
  EXPECT_EQ(chosen("Reload", "Nowhere"), "null");
  EXPECT_EQ(chosen("Nowhere", "Nothing"), "null");
  EXPECT_EQ(pressed.size(), 4);
  EXPECT_EQ(failure("SelectMenuItemEitherOr", {{"path1", "File > Reload"}, {"path2", "File > Nowhere"}}),
            "menuItemInactive");
  EXPECT_THAT(failure("SelectMenuItemEitherOr", {{"title1", "Nowhere"}, {"title2", "Nothing"}}),
              HasSubstr("menuItemNotFound: None of the"));
  EXPECT_EQ(failure("SelectMenuItemEitherOr", {{"title1", "Open"}, {"title2", " \n"}}), "title2");
  EXPECT_EQ(failure("SelectMenuItemEitherOr", {{"path1MainMenuItem", "File"}}), "path2MainMenuItem");
}

TEST_F(MenuActions, FailBySayingWhatThereIs) {
  EXPECT_THAT(failure("SelectMenuItem", {{"path", "View > Zoom > Sideways"}}),
              HasSubstr("menuItemNotFound: “View > Zoom” has no item “Sideways”. It has “In”, “Out”."));
  EXPECT_EQ(perform("GetMenuItemReference", {{"title", "x"}, {"errorHandlingOption", "returnNothing"}}), nullptr);
  EXPECT_EQ(failure("SelectMenuItem", {{"title", " "}}), "title");
  EXPECT_EQ(failure("SelectMenuItem", {{"selectionOption", "reference"}}), "menuItem");
  EXPECT_EQ(failure("GetMenuItemReference", {{"mainMenuItem", " "}}), "menuItemNotFound");
  bench.workspace.accessibility.all[7] = {};
  EXPECT_THAT(failure("SelectMenuItem", {{"title", "Open"}}), testing::StartsWith("appHasNoMenuBar"));
  try {
    bench.perform("SelectMenuItem", {{"title", "Open"}, {"targetContext", "Org.Example.Editr"}});
    ADD_FAILURE();
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.identity().caseName, "appCouldNotBeActivated");
    EXPECT_EQ(failure.cause()->sentence, "“org.example.editr” neither runs nor could be started. These run: "
                                         "org.example.editor, org.example.viewer.");
  }
}

TEST_F(MenuActions, SayWhyNoApplicationCanBeSeen) {
  bench.workspace.probe.otherRunning.clear();
  bench.workspace.onWindows = [] { throw platform::failure(platform::DesktopFault::wayland); };
  EXPECT_THAT(failure("SelectMenuItem", {{"title", "Open"}}), HasSubstr("appCouldNotBeActivated: "));
  EXPECT_THAT(failure("SelectMenuItem", {{"title", "Open"}}), HasSubstr("Wayland"));
}

TEST_F(MenuActions, MeanByFrontmostWhatTheirPartsDo) {
  EXPECT_EQ(bench.perform("GetMenuItemReference", {{"title", "x"}, {"errorHandlingOption", "returnNothing"}}), nullptr);
  EXPECT_THAT(bench.steps, testing::Not(Contains("frontmost lookup"))) << "whichever application is in front";
  EXPECT_THAT(bench.workspace.deeds, ElementsAre("activate 5"));
  bench.workspace.run(9, "org.chromium.chromium", "Chromium");
  EXPECT_ANY_THROW(bench.perform("SelectMenuItem", {{"title", "x"}}));
  EXPECT_THAT(bench.steps, Contains("frontmost lookup"));
  EXPECT_THAT(bench.workspace.deeds, Contains("activate 9"));
}

TEST_F(MenuActions, TestWithoutTouchingAnything) {
  const auto test = [&](const char* app, const char* segments) {
    return perform("TestMenuItemForX",
                   {{"menuItem", fmt::format(R"({{"app":{{"id":"{}"}},"pathSegments":{}}})", app, segments)}});
  };
  EXPECT_EQ(test("org.example.editor", R"(["View","Zoom"])"), true);
  EXPECT_EQ(test("org.example.editor", R"(["view","zoom"])"), false);
  EXPECT_EQ(test("org.example.editor", R"(["File","Reload"])"), false);
  EXPECT_EQ(test("org.example.sleeper", R"(["File"])"), false);
  EXPECT_EQ(test("org.example.viewer", R"(["File"])"), false) << "it has no menu bar";
  EXPECT_THAT(bench.workspace.deeds, ElementsAre());
}

} // namespace
} // namespace tabwright::actions
