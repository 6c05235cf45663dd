#include "integration/desktop/DesktopFixture.h"
#include "platform/linux/XdgApplications.h"

#include <algorithm>

namespace tabwright::platform {

namespace {

class TwoWindows : public DesktopTest {
protected:
  void SetUp() override {
    first = windowOf(windows, firstEditor).id;
    second = windowOf(windows, secondEditor).id;
  }

  ClientWindow look(std::uint32_t id) {
    const std::vector<ClientWindow> all = windows.windows();
    const auto found = std::ranges::find(all, id, &ClientWindow::id);
    return found == all.end() ? ClientWindow() : *found;
  }

  Program firstEditor{{"mousepad", "--disable-server"}}, secondEditor{{"mousepad", "--disable-server"}};
  std::uint32_t first = 0, second = 0;
};

TEST_F(TwoWindows, AreToldInFull) {
  const ClientWindow window = look(first);
  EXPECT_EQ(window.pid, firstEditor.pid());
  EXPECT_EQ(window.name, "Untitled 1 - Mousepad");
  EXPECT_EQ(window.windowClass, "Mousepad");
  EXPECT_EQ(window.instance, "mousepad");
  EXPECT_EQ(window.applicationID, "org.xfce.mousepad");
  EXPECT_TRUE(window.isShown);
  eventually([&] { return look(first).workspace == 0u; });
  EXPECT_GT(window.place.width, 100);
  const auto application = XdgApplications().applicationOf(window);
  ASSERT_TRUE(application);
  EXPECT_EQ(application->id, "org.xfce.mousepad");
  EXPECT_EQ(application->name, "Mousepad");
}

TEST_F(TwoWindows, AreMovedAndClosed) {
  const Rectangle place{.x = 120, .y = 140, .width = 500, .height = 333};
  windows.place(first, place);
  eventually([&] { return look(first).place == place; });
  windows.close(second);
  eventually([&] { return look(second).id == 0; });
  EXPECT_EQ(faultOf([&] { windows.place(second, place); }), DesktopFault::windowGone);
  windows.activate(second);
}

TEST_F(TwoWindows, AreFoundOnAnotherWorkspace) {
  ASSERT_EQ(
      std::system(("xprop -id " + std::to_string(first) + " -f _NET_WM_NAME 8u -set _NET_WM_NAME Elsewhere").c_str()),
      0);
  ASSERT_EQ(std::system(("xdotool set_desktop_for_window " + std::to_string(first) + " 2").c_str()), 0);
  eventually([&] { return look(first).workspace == 2u && look(second).isActive; });
  windows.activate(first);
  EXPECT_TRUE(look(first).isActive);
  windows.activate(second);
  EXPECT_TRUE(look(second).isActive);
  EXPECT_EQ(look(second).workspace, 0u);
}

} // namespace

} // namespace tabwright::platform
