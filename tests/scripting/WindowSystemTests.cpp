#include "applescript/Interpreter.h"
#include "engine/AppleScriptSnippets.h"
#include "platform/DesktopFault.h"
#include "platform/linux/X11WindowSystem.h"
#include "scripting/ScriptingDirectory.h"
#include "scripting/foundation/FoundationBridge.h"
#include "scripting/systemevents/LinuxDesktop.h"
#include "support/ModelDesktop.h"
#include "support/ModelWorkspace.h"
#include "support/ProcessTree.h"

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

using tabwright::platform::ClientWindow;
using tabwright::platform::X11WindowSystem;

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

  /// `pid` is what the window tells; 0: nothing. `type` is an atom; 0: none.
  std::uint32_t open(const std::string& name, std::uint32_t pid, xcb_atom_t type = XCB_ATOM_NONE) {
    const xcb_window_t window = create(name, pid, type);
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

  /// Without a window manager, a window is there as soon as the server has heard of it.
  std::uint32_t openUnmanaged(const std::string& name, std::uint32_t pid) {
    const xcb_window_t window = create(name, pid, XCB_ATOM_NONE);
    xcb_map_window(xcb_, window);
    std::free(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
    return window;
  }

  void close(std::uint32_t window) {
    xcb_destroy_window(xcb_, window);
    std::free(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
  }

  [[nodiscard]] const xcb_ewmh_connection_t& atoms() const { return ewmh_; }

  bool isManaged(xcb_window_t window) {
    xcb_ewmh_get_windows_reply_t list{};
    if (xcb_ewmh_get_client_list_reply(&ewmh_, xcb_ewmh_get_client_list(&ewmh_, 0), &list, nullptr) == 0)
      return false;
    const bool isListed =
        std::find(list.windows, list.windows + list.windows_len, window) != list.windows + list.windows_len;
    xcb_ewmh_get_windows_reply_wipe(&list);
    return isListed;
  }

  /// Does what a manager does that keeps no stack: lists windows, the oldest first, and tells the active one.
  void listAsManaged(std::vector<xcb_window_t> oldestFirst, xcb_window_t active) {
    constexpr std::uint32_t normal[]{1, XCB_WINDOW_NONE};
    for (const xcb_window_t window : oldestFirst)
      xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, stage(), stage(), 32, 2, normal);
    xcb_ewmh_set_client_list(&ewmh_, 0, static_cast<std::uint32_t>(oldestFirst.size()), oldestFirst.data());
    xcb_ewmh_set_active_window(&ewmh_, 0, active);
    std::free(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
  }

  /// As a manager leaves a window that is being closed, before it takes it off its list.
  void beginToClose(xcb_window_t window) {
    xcb_delete_property(xcb_, window, stage());
    std::free(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
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
  xcb_atom_t stage() {
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(xcb_, xcb_intern_atom(xcb_, 0, 8, "WM_STATE"), nullptr), &std::free);
    return reply->atom;
  }

  xcb_window_t create(const std::string& name, std::uint32_t pid, xcb_atom_t type) {
    const xcb_window_t window = xcb_generate_id(xcb_);
    xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window, ewmh_.screens[0]->root, 10, 10, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, ewmh_.screens[0]->root_visual, 0, nullptr);
    xcb_ewmh_set_wm_name(&ewmh_, window, static_cast<std::uint32_t>(name.size()), name.c_str());
    const std::string windowClass = name + '\0' + "Class of " + name + '\0';
    xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(windowClass.size()), windowClass.data());
    if (pid != 0)
      xcb_ewmh_set_wm_pid(&ewmh_, window, pid);
    if (type != XCB_ATOM_NONE)
      xcb_ewmh_set_wm_window_type(&ewmh_, window, 1, &type);
    return window;
  }

  xcb_connection_t* xcb_;
  xcb_ewmh_connection_t ewmh_{};
};

/// A display without screen, and a client.
class BareDisplay : public testing::Test {
protected:
  void SetUp() override {
    if (!isInstalled("Xvfb"))
      GTEST_SKIP() << "needs Xvfb";
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    server = std::make_unique<ChildProcess>(std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(ends[1]),
                                                                     "-screen", "0", "800x600x24", "-nolisten", "tcp"});
    close(ends[1]);
    char number[16] = {};
    ASSERT_GT(read(ends[0], number, sizeof number - 1), 0);
    close(ends[0]);
    display = ":" + std::string(number, std::strcspn(number, "\n"));
    client = std::make_unique<Client>(display);
    windows = std::make_unique<X11WindowSystem>(display);
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

  std::unique_ptr<ChildProcess> server;
  std::unique_ptr<Client> client;
  std::unique_ptr<X11WindowSystem> windows;
  std::string display;
};

/// With a window manager.
class RealWindowSystem : public BareDisplay {
protected:
  void SetUp() override {
    if (!isInstalled("openbox"))
      GTEST_SKIP() << "needs openbox";
    BareDisplay::SetUp();
    if (IsSkipped() || HasFatalFailure())
      return;
    manager = std::make_unique<ChildProcess>(std::vector<std::string>{"env", "DISPLAY=" + display, "openbox"});
    ASSERT_TRUE(client->hasManager());
  }

  std::unique_ptr<ChildProcess> manager;
};

TEST_F(RealWindowSystem, ListsActivatesHidesAndShowsWindows) {
  const std::uint32_t one = client->open("One", 11);
  const std::uint32_t two = client->open("Zwei ä", 22);

  windows->activate(one);
  eventually("One (active), Zwei ä");
  EXPECT_EQ(windows->windows().back().pid, 22);
  windows->minimise({one});
  EXPECT_THAT(names(), testing::UnorderedElementsAre("One (hidden)", "Zwei ä (active)"));
  windows->restore({one});
  windows->activate(one);
  eventually("One (active), Zwei ä");
  windows->activate(two);
  eventually("Zwei ä (active), One");
}

TEST_F(RealWindowSystem, TellsWhoseWindowsTheyAre) {
  client->open("Told", 22);
  client->open("Untold", 0);
  client->open("Panel", 33, client->atoms()._NET_WM_WINDOW_TYPE_DOCK);
  client->open("Background", 33, client->atoms()._NET_WM_WINDOW_TYPE_DESKTOP);
  std::vector<std::string> all;
  for (const ClientWindow& window : windows->windows())
    all.push_back(window.name + ' ' + std::to_string(window.pid) + ' ' + window.windowClass);
  EXPECT_THAT(all, testing::UnorderedElementsAre("Told 22 Class of Told",
                                                 "Untold " + std::to_string(getpid()) + " Class of Untold"))
      << "the server knows the process of whoever doesn't tell";
}

TEST_F(BareDisplay, HidesAndShowsWithoutAManager) {
  const std::uint32_t one = client->openUnmanaged("One", 11);
  const std::uint32_t two = client->openUnmanaged("Two", 22);
  EXPECT_THAT(names(), testing::ElementsAre("Two", "One"));
  windows->activate(one);
  EXPECT_THAT(names(), testing::ElementsAre("One (active)", "Two"));
  windows->minimise({one});
  EXPECT_THAT(names(), testing::ElementsAre("Two", "One (hidden)"));
  windows->restore({one});
  EXPECT_THAT(names(), testing::ElementsAre("One", "Two"));
  windows->minimise({two, one});
  EXPECT_THAT(names(), testing::UnorderedElementsAre("One (hidden)", "Two (hidden)"));
  windows->activate(two);
  EXPECT_THAT(names(), testing::ElementsAre("Two (active)", "One (hidden)"));
}

TEST_F(BareDisplay, TheNewestAreOnTopWhereAManagerKeepsNoStack) {
  const std::uint32_t one = client->openUnmanaged("One", 11);
  const std::uint32_t two = client->openUnmanaged("Two", 22);
  client->listAsManaged({one, two}, one);
  EXPECT_THAT(names(), testing::ElementsAre("Two", "One (active)"));
  client->beginToClose(two);
  EXPECT_THAT(names(), testing::ElementsAre("One (active)"));
}

constexpr const char* chromium = R"({true, "", "\"org.chromium.chromium\""})";

/// Scripts against the real desktop, on which process 20 is Chromium and 10 is not.
struct DesktopScripts {
  explicit DesktopScripts(const std::string& display) {
    tree.addProcess(10, "/usr/bin/terminal", {"terminal"}, 1);
    tree.addProcess(20, "/usr/lib/chromium/chromium", {"chromium"}, 1);
    tree.addProcess(30, "/usr/bin/editor", {"editor"}, 1);
    windows = std::make_unique<tabwright::platform::X11WindowSystem>(display);
    desktop = std::make_shared<tabwright::scripting::LinuxDesktop>(
        tabwright::scripting::LinuxDesktop::Seams{*windows, workspace, workspace, workspace, workspace, elements},
        tabwright::platform::RunningBrowsers(tree.root()));
  }

  /// The result of the lookup of the frontmost browser.
  std::string frontmostBrowser() {
    tabwright::scripting::ScriptingServices services;
    services.desktop = desktop;
    tabwright::scripting::ScriptingDirectory directory(services);
    tabwright::applescript::Surroundings surroundings;
    surroundings.directory = &directory;
    tabwright::scripting::FoundationBridge foundation;
    surroundings.objectiveC = &foundation;
    tabwright::applescript::Interpreter interpreter(surroundings);
    const std::vector<std::string> installed{"org.chromium.chromium"};
    const auto script = interpreter.compile(tabwright::engine::AppleScriptSnippets::frontmostScriptText(installed));
    return tabwright::applescript::sourceForm(interpreter.call(*script, "runWithVariables"));
  }

  tabwright::support::ProcessTree tree;
  tabwright::testsupport::ModelWorkspace workspace;
  tabwright::testsupport::ModelDesktop elements;
  std::unique_ptr<tabwright::platform::X11WindowSystem> windows;
  std::shared_ptr<tabwright::scripting::LinuxDesktop> desktop;
};

TEST_F(RealWindowSystem, TheApplicationBehindIsFoundAndTheFrontOneComesBack) {
  DesktopScripts scripts(display);
  const std::uint32_t text = client->open("Text", 30);
  const std::uint32_t page = client->open("Page", 20);
  const std::uint32_t one = client->open("Terminal 1", 10), two = client->open("Terminal 2", 10);
  windows->activate(page);
  windows->activate(two);
  windows->activate(one);
  eventually("Terminal 1 (active), Terminal 2, Page, Text");
  EXPECT_EQ(scripts.frontmostBrowser(), chromium);
  eventually("Terminal 1 (active), Terminal 2, Page, Text");

  windows->minimise({page});
  client->close(text);
  EXPECT_EQ(scripts.frontmostBrowser(), chromium) << "nothing else is there to be in front";
  eventually("Terminal 1 (active), Terminal 2, Page (hidden)");
}

TEST_F(BareDisplay, TheApplicationBehindIsFoundWithoutAManagerToo) {
  DesktopScripts scripts(display);
  EXPECT_EQ(scripts.desktop->processes().at(0).bundleIdentifier, "org.chromium.chromium") << "it may be headless";
  client->openUnmanaged("Page", 20);
  const std::uint32_t terminal = client->openUnmanaged("Terminal", 10);
  EXPECT_EQ(scripts.frontmostBrowser(), chromium);
  EXPECT_EQ(windows->windows().at(0).id, terminal);
  EXPECT_THAT(names(), testing::ElementsAre("Terminal (active)", "Page"));
}

TEST(WindowSystem, IsAbsentWithoutADisplay) {
  EXPECT_THROW((void)X11WindowSystem(":9999").windows(), tabwright::platform::DesktopFailure);
}

} // namespace
