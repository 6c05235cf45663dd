#include "integration/desktop/DesktopFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tabwright::platform {

namespace {

class EditorElements : public DesktopTest {
protected:
  void SetUp() override {
    windowOf(windows, editor);
    const auto found = accessibility.findApplication(editor.pid(), {});
    ASSERT_TRUE(found);
    root = *found;
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

} // namespace

} // namespace tabwright::platform
