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
    // A manager that is just starting may overlook a window, so it is shown again until it is managed.
    for (int attempt = 0; attempt < 500 && !isManaged(window); ++attempt) {
      if (attempt % 50 == 0) {
        xcb_unmap_window(xcb_, window);
        xcb_map_window(xcb_, window);
        xcb_flush(xcb_);
      }
      poll(nullptr, 0, 20);
    }
    return window;
  }

  bool isManaged(xcb_window_t window) {
    xcb_ewmh_get_windows_reply_t list{};
    if (xcb_ewmh_get_client_list_reply(&ewmh_, xcb_ewmh_get_client_list(&ewmh_, 0), &list, nullptr) == 0)
      return false;
    const bool isListed =
        std::find(list.windows, list.windows + list.windows_len, window) != list.windows + list.windows_len;
    xcb_ewmh_get_windows_reply_wipe(&list);
    return isListed;
  }

  /// Waits until a window manager runs and is ready: it lists windows, and knows which desktop is shown.
  bool hasManager() {
    for (int attempt = 0; attempt < 500; ++attempt) {
      xcb_ewmh_get_windows_reply_t list{};
      std::uint32_t desktop = 0;
      if (xcb_ewmh_get_client_list_stacking_reply(&ewmh_, xcb_ewmh_get_client_list_stacking(&ewmh_, 0), &list,
                                                  nullptr) != 0) {
        xcb_ewmh_get_windows_reply_wipe(&list);
        if (xcb_ewmh_get_current_desktop_reply(&ewmh_, xcb_ewmh_get_current_desktop(&ewmh_, 0), &desktop, nullptr) != 0)
          return true;
      }
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

  std::vector<std::string> names() {
    std::vector<std::string> result;
    for (const ClientWindow& window : windows->windows())
      result.push_back(window.name + (window.isShown ? "" : " (hidden)") + (window.isActive ? " (active)" : ""));
    return result;
  }

  /// The manager reports the new order a moment after the new active window.
  void eventually(const std::string& expected) {
    std::string now;
    for (int attempt = 0; attempt < 500 && now != expected; ++attempt) {
      now.clear();
      for (const std::string& name : names())
        now += (now.empty() ? "" : ", ") + name;
      poll(nullptr, 0, now == expected ? 0 : 20);
    }
    EXPECT_EQ(now, expected);
  }

  std::unique_ptr<ChildProcess> server, manager;
  std::unique_ptr<Client> client;
  std::unique_ptr<WindowSystem> windows;
  std::string display;
};

TEST_F(RealWindowSystem, ListsActivatesHidesAndShowsWindows) {
  const std::uint32_t one = client->open("One", 11);
  const std::uint32_t two = client->open("Zwei ä", 22);

  windows->activate(one);
  eventually("One (active), Zwei ä");
  EXPECT_EQ(windows->windows().back().pid, 22);
  windows->iconify({one});
  EXPECT_THAT(names(), testing::UnorderedElementsAre("One (hidden)", "Zwei ä (active)"));
  windows->open({one});
  windows->activate(one);
  eventually("One (active), Zwei ä");
  windows->activate(two);
  eventually("Zwei ä (active), One");
}

TEST(WindowSystem, IsAbsentWithoutADisplay) {
  EXPECT_EQ(WindowSystem::connect(":9999"), nullptr);
}

} // namespace
