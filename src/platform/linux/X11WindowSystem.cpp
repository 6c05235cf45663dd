// A change is asked of the window manager by a message to the root window, and then awaited by watching the root's
// properties. Without a window manager windows are moved, hidden and given the keyboard here. A window manager may
// refuse, or do something else, and says neither; so no answer is awaited but the effect itself, for a while. Requests
// of EWMH say that a pager sends them, since managers keep applications from taking the keyboard from the user, and a
// pager acts for the user.
#include "platform/linux/X11WindowSystem.h"

#include "platform/DesktopFault.h"
#include "platform/linux/X11Windows.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <optional>
#include <poll.h>
#include <utility>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace tabwright::platform {

namespace {

/// For how long a window manager is waited for. It answers within some milliseconds.
constexpr auto longestChange = std::chrono::milliseconds(500);
/// After an iconification no window is active for about a millisecond.
constexpr auto activationGap = std::chrono::milliseconds(50);
/// For how long a window that has begun to change its place is waited for.
constexpr auto roundingGap = std::chrono::milliseconds(100);

constexpr std::uint32_t iconicState = 3;    // ICCCM 4.1.4
constexpr std::uint32_t staticGravity = 10; // the place is that of the window itself, not of its frame
constexpr std::uint32_t sourceIsPager = 2;

} // namespace

class X11WindowSystem::Connection {
public:
  explicit Connection(const std::string& name)
      : windows(name), xcb(windows.display().connection()), root(windows.display().root()),
        screen(windows.display().screen()), hints(windows.hints()) {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(xcb, root, XCB_CW_EVENT_MASK, &mask);
  }

  X11Windows windows;
  xcb_connection_t* const xcb;
  const xcb_window_t root;
  const int screen;
  xcb_ewmh_connection_t* const hints;

  /// Waits until `isSo`, looking again whenever the root window reports a change.
  void await(std::chrono::milliseconds most, const std::function<bool()>& isSo) {
    const auto deadline = std::chrono::steady_clock::now() + most;
    while (!isSo() && !windows.display().isLost()) {
      const auto left =
          std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
      if (left.count() <= 0)
        return;
      // States of single windows change without a word from the root, so look again every now and then.
      pollfd descriptor{xcb_get_file_descriptor(xcb), POLLIN, 0};
      poll(&descriptor, 1, static_cast<int>(std::min<std::int64_t>(left.count(), 10)));
      // The kind of change doesn't matter: `isSo` looks at all again.
      while (ReplyPointer<xcb_generic_event_t> event{xcb_poll_for_event(xcb)}) {
      }
    }
  }

  /// Sends a message about a window: to the root, where the window manager reads it, or to the window itself.
  void send(xcb_window_t receiver, xcb_window_t window, const char* type, std::initializer_list<std::uint32_t> data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = windows.display().atom(type);
    std::ranges::copy(data, message.data.data32);
    const std::uint32_t mask = receiver == root
                                   ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT
                                   : XCB_EVENT_MASK_NO_EVENT;
    xcb_send_event(xcb, 0, receiver, mask, reinterpret_cast<const char*>(&message));
  }

  /// True when a window has the keyboard, or none is shown that could have it.
  bool isSettled() {
    const std::vector<ClientWindow> now = windows.read();
    return std::ranges::none_of(now, &ClientWindow::isShown) || std::ranges::any_of(now, &ClientWindow::isActive);
  }

  /// True when all of these are open, or all hidden and without the keyboard.
  bool allShown(const std::vector<std::uint32_t>& ids, bool shown) {
    const std::vector<ClientWindow> now = windows.read();
    return std::ranges::all_of(ids, [&](std::uint32_t id) {
      const auto window = std::ranges::find(now, id, &ClientWindow::id);
      // A window that has just been hidden may be told as active for a moment more.
      return window == now.end() || (window->isShown == shown && (shown || !window->isActive));
    });
  }
};

X11WindowSystem::X11WindowSystem(std::string display) : display_(std::move(display)) {}
X11WindowSystem::~X11WindowSystem() = default;

X11WindowSystem::Connection& X11WindowSystem::connection() {
  if (!connection_ || connection_->windows.display().isLost())
    connection_ = std::make_unique<Connection>(display_);
  return *connection_;
}

std::vector<ClientWindow> X11WindowSystem::windows() {
  const MutexLock lock(mutex_);
  return connection().windows.read();
}

void X11WindowSystem::activate(std::uint32_t window) {
  const MutexLock lock(mutex_);
  Connection& system = connection();
  const bool isManaged = system.windows.isManaged();
  if (isManaged) {
    // Not all managers go there by themselves.
    if (const auto workspace = system.windows.workspaceElsewhere(window))
      xcb_ewmh_request_change_current_desktop(system.hints, system.screen, *workspace, XCB_CURRENT_TIME);
    xcb_ewmh_request_change_active_window(system.hints, system.screen, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                          XCB_CURRENT_TIME, XCB_WINDOW_NONE);
  } else {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_map_window(system.xcb, window);
    xcb_configure_window(system.xcb, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    // Its parent gets the keyboard when it goes.
    xcb_set_input_focus(system.xcb, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  }
  xcb_flush(system.xcb);
  // A modal dialog takes its window's place. A window that was sent to another workspace may still be told as active
  // for a moment.
  system.await(longestChange, [&] {
    const std::uint32_t active = system.windows.active();
    return (active == window || (active != XCB_WINDOW_NONE && system.windows.ownerOf(active) == window)) &&
           !(isManaged && system.windows.workspaceElsewhere(window));
  });
}

void X11WindowSystem::minimise(const std::vector<std::uint32_t>& windows) {
  const MutexLock lock(mutex_);
  Connection& system = connection();
  const bool isManaged = system.windows.isManaged();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (isManaged) {
      // The form of ICCCM: EWMH leaves its own state for this to the manager.
      system.send(system.root, *window, "WM_CHANGE_STATE", {iconicState});
    } else {
      xcb_unmap_window(system.xcb, *window);
      system.windows.noteHidden(*window);
    }
  }
  xcb_flush(system.xcb);
  system.await(longestChange, [&] { return system.allShown(windows, false); });
  if (isManaged)
    system.await(activationGap, [&] { return system.isSettled(); });
}

void X11WindowSystem::restore(const std::vector<std::uint32_t>& windows) {
  const MutexLock lock(mutex_);
  Connection& system = connection();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window)
    xcb_map_window(system.xcb, *window);
  xcb_flush(system.xcb);
  system.await(longestChange, [&] { return system.allShown(windows, true); });
}

void X11WindowSystem::place(std::uint32_t window, const Rectangle& place) {
  const MutexLock lock(mutex_);
  Connection& system = connection();
  const std::optional<Rectangle> before = system.windows.placeOf(window);
  if (!before)
    throw failure(DesktopFault::windowGone);
  const auto x = static_cast<std::uint32_t>(place.x), y = static_cast<std::uint32_t>(place.y),
             width = static_cast<std::uint32_t>(std::max(place.width, 1)),
             height = static_cast<std::uint32_t>(std::max(place.height, 1));
  if (system.windows.isManaged()) {
    constexpr std::uint32_t all = XCB_EWMH_MOVERESIZE_WINDOW_X | XCB_EWMH_MOVERESIZE_WINDOW_Y |
                                  XCB_EWMH_MOVERESIZE_WINDOW_WIDTH | XCB_EWMH_MOVERESIZE_WINDOW_HEIGHT;
    system.send(system.root, window, "_NET_MOVERESIZE_WINDOW",
                {staticGravity | all | sourceIsPager << 12, x, y, width, height});
  } else {
    const std::uint32_t values[]{x, y, width, height};
    xcb_configure_window(system.xcb, window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         values);
  }
  xcb_flush(system.xcb);
  // Nothing would change, so there is nothing to wait for.
  if (place == *before)
    return;
  system.await(longestChange, [&] { return system.windows.placeOf(window) != before; });
  // Moving and sizing may come one after the other. A size that the application rounds never becomes the one asked for.
  system.await(roundingGap, [&] { return system.windows.placeOf(window) == place; });
}

void X11WindowSystem::setFullScreen(std::uint32_t window, bool isFullScreen) {
  const MutexLock lock(mutex_);
  Connection& system = connection();
  if (!system.windows.isManaged())
    return;
  xcb_ewmh_request_change_wm_state(
      system.hints, system.screen, window, isFullScreen ? XCB_EWMH_WM_STATE_ADD : XCB_EWMH_WM_STATE_REMOVE,
      system.hints->_NET_WM_STATE_FULLSCREEN, XCB_ATOM_NONE, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
  xcb_flush(system.xcb);
  system.await(longestChange, [&] {
    const std::vector<ClientWindow> now = system.windows.read();
    const auto found = std::ranges::find(now, window, &ClientWindow::id);
    return found == now.end() || found->isFullScreen == isFullScreen;
  });
}

void X11WindowSystem::close(std::uint32_t window) {
  const MutexLock lock(mutex_);
  Connection& system = connection();
  if (system.windows.isManaged())
    xcb_ewmh_request_close_window(system.hints, system.screen, window, XCB_CURRENT_TIME,
                                  XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
  else
    system.send(window, window, "WM_PROTOCOLS", {system.windows.display().atom("WM_DELETE_WINDOW")});
  xcb_flush(system.xcb);
}

} // namespace tabwright::platform
