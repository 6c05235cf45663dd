#include "scripting/systemevents/WindowSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace {

using tabwright::scripting::ClientWindow;
using tabwright::scripting::WindowSystem;

bool isInstalled(const std::string& program) {
  return std::system(("command -v " + program + " >/dev/null").c_str()) == 0;
}

/// A program that ends with the test.
class ChildProcess {
public:
  explicit ChildProcess(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& each : command)
      arguments.push_back(const_cast<char*>(each.c_str()));
    arguments.push_back(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
      execvp(arguments[0], arguments.data());
      _exit(127);
    }
  }
  ~ChildProcess() {
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

private:
  pid_t pid_ = 0;
};

/// An X11 client with windows of its own, under whatever process ids it likes.
class Client {
public:
  explicit Client(const std::string& display) : xcb_(xcb_connect(display.c_str(), nullptr)) {
    xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(xcb_, &ewmh_), nullptr);
  }
  ~Client() {
    xcb_ewmh_connection_wipe(&ewmh_);
    xcb_disconnect(xcb_);
  }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  std::uint32_t open(const std::string& name, std::uint32_t pid) {
    const xcb_window_t window = xcb_generate_id(xcb_);
    xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window, ewmh_.screens[0]->root, 10, 10, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, ewmh_.screens[0]->root_visual, 0, nullptr);
    xcb_ewmh_set_wm_name(&ewmh_, window, static_cast<std::uint32_t>(name.size()), name.c_str());
    xcb_ewmh_set_wm_pid(&ewmh_, window, pid);
    xcb_map_window(xcb_, window);
    xcb_flush(xcb_);
    return window;
  }

  /// Waits until a window manager runs.
  bool hasManager() {
    for (int attempt = 0; attempt < 500; ++attempt) {
      xcb_window_t check = 0;
      if (xcb_ewmh_get_supporting_wm_check_reply(
              &ewmh_, xcb_ewmh_get_supporting_wm_check(&ewmh_, ewmh_.screens[0]->root), &check, nullptr) != 0)
        return true;
      poll(nullptr, 0, 20);
    }
    return false;
  }

private:
  xcb_connection_t* xcb_;
  xcb_ewmh_connection_t ewmh_{};
};

/// A display without screen, its window manager, and a client.
class RealWindowSystem : public testing::Test {
protected:
  void SetUp() override {
    if (!isInstalled("Xvfb") || !isInstalled("openbox"))
      GTEST_SKIP() << "needs Xvfb and openbox";
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    server = std::make_unique<ChildProcess>(std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(ends[1]),
                                                                     "-screen", "0", "800x600x24", "-nolisten", "tcp"});
    close(ends[1]);
    char number[16] = {};
    ASSERT_GT(read(ends[0], number, sizeof number - 1), 0);
    close(ends[0]);
    display = ":" + std::string(number, std::strcspn(number, "\n"));
    manager = std::make_unique<ChildProcess>(std::vector<std::string>{"env", "DISPLAY=" + display, "openbox"});
    client = std::make_unique<Client>(display);
    ASSERT_TRUE(client->hasManager());
    windows = WindowSystem::connect(display);
    ASSERT_NE(windows, nullptr);
  }

  /// Waits, with a bound, until so many windows are managed and one is active.
  std::vector<ClientWindow> listed(std::size_t count) {
    std::vector<ClientWindow> now;
    for (int attempt = 0; attempt < 500; ++attempt) {
      now = windows->windows();
      if (now.size() == count && std::ranges::any_of(now, &ClientWindow::isActive))
        break;
      poll(nullptr, 0, 20);
    }
    return now;
  }

  static std::vector<std::string> names(const std::vector<ClientWindow>& list) {
    std::vector<std::string> result;
    for (const ClientWindow& window : list)
      result.push_back(window.name + (window.isShown ? "" : " (hidden)") + (window.isActive ? " (active)" : ""));
    return result;
  }

  std::unique_ptr<ChildProcess> server, manager;
  std::unique_ptr<Client> client;
  std::unique_ptr<WindowSystem> windows;
  std::string display;
};

TEST_F(RealWindowSystem, ListsActivatesHidesAndShowsWindows) {
  const std::uint32_t one = client->open("One", 11);
  ASSERT_EQ(listed(1).size(), 1U);
  const std::uint32_t two = client->open("Zwei ä", 22);
  ASSERT_EQ(listed(2).size(), 2U);

  windows->activate(one);
  EXPECT_THAT(names(windows->windows()), testing::ElementsAre("One (active)", "Zwei ä"));
  EXPECT_EQ(windows->windows().back().pid, 22);
  windows->iconify({one});
  EXPECT_THAT(names(windows->windows()), testing::UnorderedElementsAre("One (hidden)", "Zwei ä (active)"));
  windows->open({one});
  windows->activate(one);
  EXPECT_THAT(names(windows->windows()), testing::ElementsAre("One (active)", "Zwei ä"));
  windows->activate(two);
  EXPECT_THAT(names(windows->windows()), testing::ElementsAre("Zwei ä (active)", "One"));
}

TEST(WindowSystem, IsAbsentWithoutADisplay) {
  EXPECT_EQ(WindowSystem::connect(":9999"), nullptr);
}

} // namespace
