// A model browser whose menus are windows of their own while they are open, as Chromium's are.
#include "automation/MenuSearch.h"
#include "support/ModelMenus.h"
#include "support/ModelWorkspace.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::automation {
namespace {

using platform::AccessibleRole;
using platform::AccessibleState;
using testsupport::ModelElement;
using testsupport::ModelItem;
using Texts = std::vector<std::string>;

/// Each wait takes its time at once.
class LeapingDeadlines final : public platform::DeadlineClock {
public:
  std::chrono::steady_clock::time_point now() const override { return now_; }
  bool wait(std::condition_variable_any&, platform::MutexLock<platform::Mutex>&, const platform::CallLimits& limits,
            const std::function<bool()>& isOver) override {
    now_ = std::max(now_, limits.deadline);
    return isOver();
  }

private:
  std::chrono::steady_clock::time_point now_{std::chrono::hours(1)};
};

class ChromiumMenu : public testing::Test {
protected:
  ChromiumMenu() {
    limits.clock = std::make_shared<LeapingDeadlines>();
    const std::vector<AccessibleState> on{AccessibleState::enabled, AccessibleState::sensitive,
                                          AccessibleState::visible};
    ModelElement button{.role = AccessibleRole::pushButton, .name = "Chromium", .states = on};
    button.states.push_back(AccessibleState::hasPopup);
    button.onPress = [this] { open(0, menu); };
    ModelElement hidden{.role = AccessibleRole::pushButton, .name = "Update", .states = {AccessibleState::hasPopup}};
    ModelElement plain{.role = AccessibleRole::pushButton, .name = "Back", .states = on};
    const ModelElement toolbar{.role = AccessibleRole::toolBar, .children = {plain, button, hidden}};
    const ModelElement frame{.role = AccessibleRole::frame,
                             .name = "Page - Chromium",
                             .children = {{.children = {{.role = AccessibleRole::documentWeb}, toolbar}}}};
    workspace.accessibility.all[7] = {.role = AccessibleRole::application, .name = "Chromium", .children = {frame}};
    browser = workspace.run(7, "org.chromium.chromium", "Chromium");
    workspace.onKey = [this] { keep(opened.empty() ? 0 : opened.size() - 1); };
  }

  /// Shows a menu over those that lead to it; others close, but their windows stay on the list.
  void open(std::size_t depth, const std::vector<ModelItem>& items) {
    keep(depth);
    ModelElement shown{.role = AccessibleRole::menu};
    for (const ModelItem& item : items) {
      ModelElement element{.role = AccessibleRole::menuItem, .name = item.title};
      element.states = {AccessibleState::visible};
      if (item.isEnabled)
        element.states.insert(element.states.end(), {AccessibleState::enabled, AccessibleState::sensitive});
      if (!item.below.empty() && item.title != "Zoom")
        element.states.push_back(AccessibleState::hasPopup);
      if (item.title == "Zoom") // its buttons stand in the same menu
        for (const ModelItem& each : item.below)
          element.children.push_back({.role = AccessibleRole::menuItem, .name = each.title, .states = element.states});
      element.onPress = [this, depth, item] {
        if (item.below.empty())
          keep(0);
        else
          open(depth + 1, item.below);
      };
      shown.children.push_back(std::move(element));
    }
    ModelElement popup{.role = AccessibleRole::frame, .name = "", .children = {{.children = {shown}}}};
    frames().push_back(popup);
    opened.push_back(frames().size() - 1);
    keep(opened.size());
  }

  std::vector<ModelElement>& frames() { return workspace.accessibility.all[7].children; }
  /// Closes all but the outermost.
  void keep(std::size_t count) {
    opened.resize(count);
    for (ModelElement& each : frames())
      each.states.clear();
    if (count > 0)
      frames()[opened.back()].states = {AccessibleState::active};
  }

  std::string find(std::string_view path) {
    const auto found = findMenuItemByPath(browser, path, TitleCase::counts, workspace.services, limits);
    return found ? found->path : found.error().identity().caseName;
  }
  std::string findTitle(std::string_view title) {
    const auto found =
        findMenuItemByTitle(browser, title, StringFilterEnum::isExactly, TitleCase::counts, workspace.services, limits);
    return found ? found->path : found.error().identity().caseName;
  }

  const std::vector<ModelItem> menu{
      {"New window Ctrl+N"},     {"History", {{"Open history page Ctrl+Shift+H"}, {"Recent", {{"Tab F11"}}}}},
      {"Zoom", {{"Larger"}}},    {"More tools", {{"Print… Ctrl+P"}}},
      {"Translate…", {}, false},
  };
  std::vector<std::size_t> opened; ///< windows of the menus that are open, the outermost first
  testsupport::ModelWorkspace workspace;
  targets::RunningApplication browser;
  platform::CallLimits limits;
};

TEST_F(ChromiumMenu, IsABarOfOneItem) {
  EXPECT_EQ(find("Chromium"), "Chromium");
  EXPECT_EQ(workspace.deeds, Texts{"controls of Chromium"});
  EXPECT_EQ(workspace.accessibility.pressed, Texts{}) << "nothing has to be opened for that";
  EXPECT_EQ(find("Chromium > New window"), "Chromium > New window");
  EXPECT_EQ(find("Chromium > History > Recent > Tab"), "Chromium > History > Recent > Tab");
  EXPECT_EQ(find("Chromium > Zoom > Larger"), "Chromium > Zoom > Larger");
  EXPECT_EQ(find("Chromium > History > Nothing"), "menuItemNotFound");
  EXPECT_TRUE(opened.empty()) << "all are closed again";
}

TEST_F(ChromiumMenu, IsSearchedByOpeningEachMenuOnce) {
  EXPECT_EQ(findTitle("Print..."), "Chromium > More tools > Print…");
  EXPECT_EQ(workspace.accessibility.pressed,
            (Texts{"Chromium", "Chromium", "History", "More tools", "Chromium", "History", "Recent"}))
      << "level by level";
  EXPECT_TRUE(opened.empty());
}

TEST_F(ChromiumMenu, IsOpenedAgainForAPress) {
  const auto item = findMenuItemByPath(browser, "Chromium > History > Open history page", TitleCase::counts,
                                       workspace.services, limits);
  workspace.accessibility.pressed.clear();
  workspace.deeds.clear();
  item->press(limits);
  EXPECT_EQ(workspace.accessibility.pressed, (Texts{"Chromium", "History", "Open history page Ctrl+Shift+H"}));
  EXPECT_EQ(workspace.deeds, Texts{}) << "no key is pressed";

  workspace.accessibility.pressed.clear();
  const auto disabled =
      findMenuItemByPath(browser, "Chromium > Translate…", TitleCase::counts, workspace.services, limits);
  workspace.accessibility.pressed.clear();
  disabled->press(limits);
  EXPECT_EQ(workspace.accessibility.pressed, Texts{});
}

TEST_F(ChromiumMenu, ComesToTheFrontWhileItIsRead) {
  workspace.run(9, "editor", "Editor");
  workspace.activate(9);
  workspace.deeds.clear();
  EXPECT_EQ(find("Chromium > New window"), "Chromium > New window");
  EXPECT_EQ(workspace.deeds, (Texts{"controls of Chromium", "activate 7", "key ff1b", "activate 9"}));
}

TEST_F(ChromiumMenu, IsNotOpenedWhereItCouldNotBeClosed) {
  workspace.onWindows = [] { throw platform::failure(platform::DesktopFault::wayland); };
  const auto found =
      findMenuItemByPath(browser, "Chromium > New window", TitleCase::counts, workspace.services, limits);
  EXPECT_EQ(found.error().cause()->identity.caseName, "wayland");
  EXPECT_EQ(workspace.accessibility.pressed, Texts{});
}

TEST_F(ChromiumMenu, IsNoneWhereTheBrowserShowsNoControls) {
  frames()[0].children.clear();
  EXPECT_EQ(find("Chromium"), "appHasNoMenuBar");
}

} // namespace
} // namespace tabwright::automation
