#include "integration/desktop/DesktopFixture.h"
#include "support/Environment.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <stop_token>
#include <unistd.h>

namespace tabwright::platform {

namespace {

class EditorElements : public DesktopTest {
protected:
  void SetUp() override {
    windowOf(windows, editor);
    root = applicationOf(editor);
  }

  Program editor{{"mousepad", "--disable-server"}};
  AccessibleElement root;
};

TEST_F(EditorElements, AMenuItemIsFoundByItsPathAndPressed) {
  const AccessibleElement item = find(findRole(root, AccessibleRole::menuBar), {"File", "New Window"});
  ASSERT_FALSE(item.path.empty());
  const AccessibleFacts facts = factsOf(item, {.role = true, .states = true, .actions = true});
  EXPECT_EQ(facts.role, AccessibleRole::menuItem);
  EXPECT_TRUE(facts.states->has(AccessibleState::sensitive));
  EXPECT_FALSE(facts.states->has(AccessibleState::showing)) << "the menu stays closed";
  EXPECT_EQ(facts.actions->size(), 1u);

  accessibility.perform(item, 0, {});
  eventually([&] { return std::ranges::count(windows.windows(), editor.pid(), &ClientWindow::pid) == 2; });
}

TEST_F(EditorElements, TheTextIsSetAndRead) {
  const AccessibleElement area = findRole(root, AccessibleRole::text);
  accessibility.setText(area, "Zeile ä\nzwei 😀", {});
  const AccessibleFacts facts =
      factsOf(area, {.parent = true, .attributes = true, .text = true, .extents = true, .toolkit = true});
  EXPECT_EQ(facts.text, "Zeile ä\nzwei 😀");
  EXPECT_GT(facts.extents->height, 10);
  EXPECT_TRUE(facts.parent);
  EXPECT_TRUE(facts.attributes);
  EXPECT_FALSE(facts.name) << "was not asked for";
  EXPECT_EQ(factsOf(root, {.toolkit = true}).toolkit, "gtk");
  accessibility.focus(area, {});
  EXPECT_EQ(faultOf([&] { accessibility.setText(root, "x", {}); }), DesktopFault::elementRefused);
}

TEST_F(EditorElements, ADisabledItemTakesAPressAndDoesNothing) {
  const AccessibleElement item = find(findRole(root, AccessibleRole::menuBar), {"Edit", "Undo"});
  EXPECT_FALSE(factsOf(item, {.states = true}).states->has(AccessibleState::sensitive));
  accessibility.perform(item, 0, {});
}

TEST_F(EditorElements, AnApplicationThatHangsCostsItsTimeAlone) {
  const Program other{{"mousepad", "--disable-server"}};
  windowOf(windows, other);
  const AccessibleElement healthy = applicationOf(other);
  ::kill(editor.pid(), SIGSTOP);
  try {
    (void)factsOf(root, {.name = true});
    FAIL() << "a stopped process answered";
  } catch (const DesktopFailure& failure) {
    EXPECT_EQ(failure.kind(), DesktopFault::notAnswering);
    EXPECT_THAT(failure.errorDescription(), testing::StartsWith("“mousepad” (process "));
  }
  EXPECT_EQ(faultOf([&] { accessibility.perform(root, 0, {}); }), DesktopFault::notAnswering);
  EXPECT_EQ(factsOf(healthy, {.name = true}).name, "mousepad");
  ::kill(editor.pid(), SIGCONT);
}

TEST_F(EditorElements, AnApplicationThatHasEndedIsGone) {
  editor.kill();
  EXPECT_FALSE(factsOf(root, {.name = true}).name);
  EXPECT_EQ(faultOf([&] { accessibility.perform(root, 0, {}); }), DesktopFault::elementGone);
  EXPECT_FALSE(accessibility.findApplication(editor.pid(), {}));
}

TEST_F(EditorElements, WaitingEndsWithTheStop) {
  ::kill(editor.pid(), SIGSTOP);
  std::stop_source source;
  CallLimits limits;
  limits.stop = source.get_token();
  source.request_stop();
  EXPECT_EQ(faultOf([&] { (void)accessibility.read({&root, 1}, {.name = true}, limits); }), DesktopFault::stopped);
  ::kill(editor.pid(), SIGCONT);
}

/// Qt shows a program only when accessibility is on, and answers an action when the dialog that it opened closes.
TEST_F(DesktopTest, AQtProgramJoinsAndItsDialogIsNotWaitedFor) {
  if (access("/usr/lib/qt6/bin/linguist", X_OK) != 0)
    GTEST_SKIP() << "needs Qt's Linguist";
  const Program program{{"/usr/lib/qt6/bin/linguist"}};
  windowOf(windows, program);
  const AccessibleElement root = applicationOf(program);
  EXPECT_EQ(factsOf(root, {.toolkit = true}).toolkit, "Qt");
  const AccessibleElement bar = findRole(root, AccessibleRole::menuBar);
  const AccessibleElement item = find(bar, {"Help", "", "About Qt Linguist"});
  ASSERT_FALSE(item.path.empty());
  accessibility.perform(item, 0, {});
  eventually([&] { return std::ranges::count(windows.windows(), program.pid(), &ClientWindow::pid) == 2; });
  EXPECT_TRUE(factsOf(bar, {.children = true}).children) << "and the program still answers";
}

TEST(Accessibility, TellsThatThereIsNoBus) {
  const testsupport::Environment nowhere(
      {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere"}, {"DISPLAY", std::nullopt}});
  AtspiAccessibility accessibility;
  EXPECT_EQ(faultOf([&] { (void)accessibility.applications({}); }), DesktopFault::noAccessibilityBus);
}

TEST(Accessibility, FindsTheBusByTheDisplayWhereTheSessionHasNone) {
  AtspiAccessibility before;
  (void)before.applications({}); // the bus is running now
  const testsupport::Environment nowhere(
      testsupport::Environment::Values{{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere"}});
  AtspiAccessibility accessibility;
  EXPECT_NO_THROW((void)accessibility.applications({}));
}

} // namespace

} // namespace tabwright::platform
