// The searches, on the same menus as two toolkits publish them.
#include "automation/AxeApp.h"
#include "automation/MenuSearch.h"
#include "support/ModelMenus.h"
#include "support/ModelWorkspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::automation {
namespace {

using engine::AxeError;
using platform::DesktopFault;
using testing::HasSubstr;
using testing::StartsWith;
using testsupport::ModelElement;
using testsupport::ModelItem;
using testsupport::Toolkit;
using enum StringFilterEnum;

const std::vector<ModelItem> menus{
    {"File",
     {{"Open Things"},
      testsupport::separator,
      {"Export", {{"As Text..."}, {"Deep", {{"Deeper", {{"Deepest"}}}}}}},
      {"Save As…"},
      {"Secret", {}, true, true},
      {"Reload", {}, false},
      {"Quit"}}},
    {"Open Things", {{"Twin"}, {"After"}}},
    {"Window", {{"Same", {{"One"}}}, {"Same", {{"Two"}}}, {"Quit"}}},
    {"Locked", {{"Inside"}}, false},
    {"Help", {}},
};

class MenuSearch : public testing::TestWithParam<Toolkit> {
protected:
  MenuSearch() {
    workspace.accessibility.all[7] = testsupport::applicationWithMenus(menus, GetParam());
    editor = workspace.run(7, "org.example.Editor", "Editor");
  }

  MenuItemResult byPath(std::string_view path, TitleCase titleCase = TitleCase::counts) {
    return findMenuItemByPath(editor, path, titleCase, workspace.services, {});
  }
  MenuItemResult byTitle(std::string_view title, StringFilterEnum filter = isExactly,
                         TitleCase titleCase = TitleCase::counts) {
    return findMenuItemByTitle(editor, title, filter, titleCase, workspace.services, {});
  }

  /// The path of what was found; else the case and its cause.
  static std::string told(const MenuItemResult& result) {
    if (result)
      return result->path;
    return result.error().identity().caseName +
           (result.error().cause() ? ": " + result.error().cause()->sentence : std::string());
  }

  ModelElement& menuBar() { return workspace.accessibility.all[7].children[0].children[0].children[0].children[0]; }

  testsupport::ModelWorkspace workspace;
  targets::RunningApplication editor;
};

INSTANTIATE_TEST_SUITE_P(Toolkits, MenuSearch, testing::Values(Toolkit::gtk, Toolkit::qt),
                         [](const auto& info) { return info.param == Toolkit::gtk ? "Gtk" : "Qt"; });

TEST_P(MenuSearch, FindsAPath) {
  EXPECT_EQ(told(byPath("File")), "File");
  EXPECT_EQ(told(byPath("File > Export > Deep>Deeper > Deepest")), "File > Export > Deep > Deeper > Deepest");
  EXPECT_EQ(told(byPath("File > Save As...")), "File > Save As…");
  EXPECT_EQ(told(byPath("File > Export > As Text…")), "File > Export > As Text...");
  EXPECT_EQ(told(byPath("file > SAVE as…", TitleCase::ignored)), "File > Save As…");
  EXPECT_EQ(told(byPath("File > Reload")), "File > Reload") << "disabled items are found";
  EXPECT_EQ(told(byPath("Window > Same > One")), "Window > Same > One");

  const std::array<std::optional<std::string>, 4> segments{"File", std::nullopt, " \n", "Quit"};
  EXPECT_EQ(told(findMenuItemBySegments(editor, segments, TitleCase::counts, workspace.services, {})), "File > Quit");
}

TEST_P(MenuSearch, TellsHowFarAPathLeads) {
  EXPECT_EQ(told(byPath("file > Quit")),
            "menuItemNotFound: The menu bar has no item “file”. It has “File”, “Open Things”, “Window”, “Locked”, "
            "“Help”.");
  EXPECT_EQ(told(byPath("Window > Same > Two")), "menuItemNotFound: “Window > Same” has no item “Two”. It has “One”.")
      << "the second of two twins is out of reach";
  EXPECT_EQ(told(byPath("File > Export > As PDF")),
            "menuItemNotFound: “File > Export” has no item “As PDF”. It has “As Text...”, “Deep”.");
  EXPECT_EQ(
      told(byPath("Help > About")),
      "menuItemNotFound: “Help” has no items that can be read, so there is no “About”. Some menus are filled only "
      "when they are shown.");
  EXPECT_EQ(told(byPath(" > ")), "menuItemNotFound");
}

struct TitleCaseRow {
  std::string title;
  StringFilterEnum filter;
  std::string found;
  TitleCase titleCase = TitleCase::counts;
};

TEST_P(MenuSearch, FindsTitlesInTheOrderOfTheMenus) {
  for (const TitleCaseRow& row : std::vector<TitleCaseRow>{
           {"Quit", isExactly, "File > Quit"},
           {"Window", isExactly, "Window"},
           {"window", isExactly, "Window", TitleCase::ignored},
           {"Open Things", isExactly, "File > Open Things"},
           {"Wind", beginsWith, "menuItemNotFound"}, // an item of the bar is found by its whole title alone
           {"Open", contains, "File > Open Things"},
           {"Dee", beginsWith, "File > Export > Deep"},
           {"est", endsWith, "File > Export > Deep > Deeper > Deepest"},
           {"^.e", regex, "File > Export > Deep"}, // before "Reload", which is behind "Export"
           {"save", contains, "File > Save As…", TitleCase::ignored},
           {"Save As...", isExactly, "File > Save As…"},
           {"Same", regex, "Window > Same"},
           {"[", regex, "menuItemNotFound"},
           {"Inside", isExactly, "Locked > Inside"},
       }) {
    const std::string found = told(byTitle(row.title, row.filter, row.titleCase));
    EXPECT_EQ(found.substr(0, found.find(':')), row.found) << row.title;
  }
  EXPECT_EQ(told(byTitle(" \t")), "menuItemNotFound");
  EXPECT_THAT(told(byTitle("Deepness")), StartsWith("menuItemNotFound: None of the 2"));
  EXPECT_THAT(told(byPath("Window > Nothing")), testing::EndsWith("It has “Same”, “Quit”.")) << "each title once";
  EXPECT_THAT(told(byTitle("Deepness")), HasSubstr("The nearest are “Deep”, “Deeper”, “Deepest”, “File”"));
}

TEST_P(MenuSearch, FindsAnItemWithASubmenuByItsOwnTitleWhateverTheFilter) {
  workspace.accessibility.all[7] =
      testsupport::applicationWithMenus({{"Tools", {{"C++"}, {"C++ (", {{"Twin of C++ ("}}}}}}, GetParam());
  EXPECT_EQ(told(byTitle("C++ (", regex)), "Tools > C++ (");
}

TEST_P(MenuSearch, ReadsALevelInOneGo) {
  const auto roundsOf = [&](auto search) {
    const std::size_t before = workspace.accessibility.rounds;
    static_cast<void>(search());
    return workspace.accessibility.rounds - before;
  };
  const std::size_t bar = roundsOf([&] { return byPath("Help"); });
  const std::size_t menu = GetParam() == Toolkit::qt ? 2 : 1; // Qt's menus are elements of their own
  EXPECT_EQ(roundsOf([&] { return byPath("Window > Quit"); }), bar + menu);
  EXPECT_EQ(roundsOf([&] { return byTitle("Nowhere"); }), bar + 4 * menu);
}

TEST_P(MenuSearch, KnowsWhichItemsCanBeChosen) {
  EXPECT_TRUE(byPath("File > Quit")->isEnabled());
  EXPECT_FALSE(byPath("File > Reload")->isEnabled());
  EXPECT_FALSE(byPath("Locked > Inside")->isEnabled()) << "its menu can't be opened";
  EXPECT_TRUE(byPath("File > Export")->isSubMenu);
  EXPECT_FALSE(byPath("File > Quit")->isSubMenu);
  // A hidden item of GTK is known as such. In a closed menu of Qt it looks like a disabled one.
  EXPECT_EQ(byPath("File > Secret").has_value(), GetParam() == Toolkit::qt);
}

TEST_P(MenuSearch, PressesAnItemOnceAndTellsOfARefusal) {
  byPath("File > Export")->press({});
  byPath("File > Quit")->press({});
  EXPECT_EQ(workspace.accessibility.pressed.size(), 2u);

  const auto item = byPath("File > Quit");
  platform::CallLimits limits;
  limits.notices = std::make_shared<platform::Notices>();
  workspace.accessibility.onPress = [] { throw platform::failure(DesktopFault::elementGone); };
  item->press(limits);
  ASSERT_EQ(limits.notices->all().size(), 1u);
  EXPECT_EQ(limits.notices->all()[0].identity.caseName, "elementGone");
  workspace.accessibility.onPress = [] { throw platform::failure(DesktopFault::stopped); };
  EXPECT_THROW(item->press(limits), platform::DesktopFailure);
}

TEST_P(MenuSearch, TakesWhatItCannotReadAsAbsent) {
  menuBar().children[0].name.reset();
  EXPECT_EQ(told(byPath("Window > Quit")), "Window > Quit");
  EXPECT_EQ(told(byTitle("Quit")), "Window > Quit");

  // The application stops answering in the midst of a search.
  std::size_t left = 6;
  workspace.accessibility.onCall = [&] {
    if (left-- == 0)
      throw platform::failure(DesktopFault::notAnswering, "Editor");
  };
  EXPECT_EQ(told(byPath("Window > Quit")),
            "menuItemNotFound: Editor hasn’t answered in time. It hangs, or is very busy.");
  workspace.accessibility.onCall = [] { throw platform::failure(DesktopFault::stopped); };
  EXPECT_THROW(byTitle("Quit"), platform::DesktopFailure);
}

TEST_P(MenuSearch, TellsWhyThereIsNoMenuBar) {
  menuBar().role = platform::AccessibleRole::documentWeb; // what looks like a menu bar in a page is none
  menuBar().children = {testsupport::menuBarElement(menus, GetParam())};
  EXPECT_EQ(told(byPath("File")), "appHasNoMenuBar");
  workspace.accessibility.all.clear();
  EXPECT_THAT(told(byTitle("Quit")), StartsWith("appHasNoMenuBar: Editor isn’t shown"));
  workspace.accessibility.onCall = [] { throw platform::failure(DesktopFault::noAccessibilityBus, "none"); };
  EXPECT_THAT(told(byTitle("Quit")), StartsWith("appHasNoMenuBar: The desktop’s accessibility bus"));
}

TEST_P(MenuSearch, TakesTheBarOfTheActiveWindow) {
  std::vector<ModelElement>& frames = workspace.accessibility.all[7].children;
  ModelElement other = testsupport::applicationWithMenus({{"Other", {}}}, GetParam()).children[0];
  frames.insert(frames.begin(), ModelElement{.role = platform::AccessibleRole::dialog, .name = "Dialog"});
  frames.push_back(other);
  EXPECT_EQ(told(byPath("File")), "File") << "the first that has one";
  frames.back().states = {platform::AccessibleState::active};
  EXPECT_EQ(told(byPath("Other")), "Other");
}

TEST_P(MenuSearch, KeepsTheBarItHasFoundAndLooksAgainForOneItHasNot) {
  AxeApp app(editor, workspace.services, {});
  const ModelElement whole = std::exchange(workspace.accessibility.all[7], ModelElement{});
  EXPECT_FALSE(app.menuBar());
  workspace.accessibility.all[7] = whole;
  ASSERT_TRUE(app.menuBar());
  const std::size_t before = workspace.accessibility.rounds;
  ASSERT_TRUE(app.menuBar());
  EXPECT_EQ(workspace.accessibility.rounds, before);
}

TEST_P(MenuSearch, FindsByWhatWasKept) {
  const MenuItemEntity kept = *MenuItemEntity::of(*byTitle("save AS...", isExactly, TitleCase::ignored));
  EXPECT_EQ(kept, (MenuItemEntity{"File > Save As…", {"File", "Save As…"}, {"org.example.editor", "Editor"}}));
  EXPECT_EQ(kept.displayRepresentation(), "Editor: File > Save As…");
  EXPECT_EQ(intents::ValueTraits<MenuItemEntity>::fromJson(intents::ValueTraits<MenuItemEntity>::toJson(kept)), kept);

  const auto find = [&](const MenuItemEntity& reference) {
    return told(findMenuItemByReference(reference, workspace.services, {}));
  };
  EXPECT_EQ(find(kept), "File > Save As…");
  MenuItemEntity other = kept;
  other.pathSegments[1] = "Save as…";
  EXPECT_THAT(find(other), StartsWith("menuItemNotFound"));
  other = kept;
  other.app = {"org.example.other", "Other"};
  EXPECT_EQ(find(other), "appCouldNotBeActivated: Other doesn’t run.");

  AxeMenuItem nameless = *byPath("File");
  nameless.app.bundleIdentifier.clear();
  EXPECT_EQ(MenuItemEntity::of(nameless), std::nullopt);
}

TEST_P(MenuSearch, ReadsAttributesByTheirTypes) {
  AxeApp app(editor, workspace.services, {});
  const AxeElement bar = app.menuBar()->element();
  const AxeElement file = bar.children().front();
  EXPECT_EQ(bar.role(), "AXMenuBar");
  EXPECT_EQ(file.role(), "AXMenuBarItem");
  ASSERT_EQ(file.children().size(), 1u);
  EXPECT_EQ(file.children()[0].role(), "AXMenu");
  EXPECT_EQ(file.children()[0].title(), "");
  EXPECT_EQ(file.children()[0].children()[1].role(), "AXMenuItem");
  EXPECT_EQ(file.children()[0].children()[1].title(), "") << "a separator";
  EXPECT_EQ(file.read<std::string>(AxeAttribute::title), "File");
  EXPECT_EQ(file.read<bool>(AxeAttribute::title).error().status, AXError::wrongType);
  EXPECT_EQ(bar.read<AxeElement>(AxeAttribute::parent).error().status, AXError::noValue);
  workspace.accessibility.onCall = [] { throw platform::failure(DesktopFault::notAnswering, "Editor"); };
  EXPECT_EQ(bar.read<std::vector<AxeElement>>(AxeAttribute::children).error().status, AXError::cannotComplete);
}

} // namespace
} // namespace tabwright::automation
