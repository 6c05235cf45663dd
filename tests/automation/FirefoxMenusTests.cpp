// A model of Firefox, whose menus are empty until they are shown, and stay filled when they have closed.
#include "automation/MenuSearch.h"
#include "support/ModelMenus.h"
#include "support/ModelWorkspace.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::automation {
namespace {

using platform::AccessibleState;
using testsupport::ModelElement;
using Texts = std::vector<std::string>;

class FirefoxMenus : public testing::Test {
protected:
  FirefoxMenus() {
    workspace.accessibility.toolkit = "Gecko";
    workspace.accessibility.all[7] = testsupport::applicationWithMenus(
        {{"File", {{"Quit"}}}, {"View", {{"Zoom", {{"Zoom In"}}}}}, {"Off", {{"Inside"}}, false}},
        testsupport::Toolkit::gtk);
    for (ModelElement& item : bar().children)
      empty(item, [&bar = bar(), at = &item - bar().children.data()]() -> ModelElement& { return bar.children[at]; });
    firefox = workspace.run(7, "firefox-esr", "Firefox");
  }

  ModelElement& bar() { return workspace.accessibility.all[7].children[0].children[0].children[0].children[0]; }

  /// Takes the items away until the first press; each press shows them, or hides them when they are shown.
  void empty(ModelElement& item, const std::function<ModelElement&()>& itself) {
    for (std::size_t at = 0; at < item.children.size(); ++at) {
      item.children[at].states = {AccessibleState::enabled, AccessibleState::sensitive};
      if (!item.children[at].children.empty())
        empty(item.children[at], [itself, at]() -> ModelElement& { return itself().children[at]; });
    }
    item.onPress = [itself, items = std::exchange(item.children, {})] {
      ModelElement& pressed = itself();
      if (pressed.children.empty())
        pressed.children = items;
      if (std::erase(pressed.children[0].states, AccessibleState::visible) == 0)
        pressed.children[0].states.push_back(AccessibleState::visible);
    };
  }

  std::string find(std::string_view title) {
    const auto found =
        findMenuItemByTitle(firefox, title, StringFilterEnum::isExactly, TitleCase::counts, workspace.services, {});
    return found ? found->path : found.error().identity().caseName;
  }

  testsupport::ModelWorkspace workspace;
  targets::RunningApplication firefox;
};

TEST_F(FirefoxMenus, AreShownOnceToBeFilled) {
  Texts& pressed = workspace.accessibility.pressed;
  const auto item = findMenuItemByPath(firefox, "View > Zoom > Zoom In", TitleCase::counts, workspace.services, {});
  ASSERT_TRUE(item);
  EXPECT_EQ(pressed, (Texts{"View", "View", "View", "Zoom      ", "View"}))
      << "only what is on the way, and closed again";
  pressed.clear();
  EXPECT_EQ(find("Zoom In"), "View > Zoom > Zoom In");
  EXPECT_EQ(pressed, (Texts{"File", "File"})) << "the one that wasn't shown before, and none that is off";
  pressed.clear();
  EXPECT_EQ(find("Quit"), "File > Quit");
  EXPECT_EQ(pressed, Texts{});
}

} // namespace
} // namespace tabwright::automation
