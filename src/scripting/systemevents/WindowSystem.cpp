// One connection, on which all questions about all windows are asked before the first answer is awaited. A change is
// asked of the window manager by a message to the root window, and then awaited by watching the root's properties.
#include "scripting/systemevents/WindowSystem.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <optional>
#include <poll.h>
#include <utility>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace tabwright::scripting {

namespace {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

/// For how long a window manager is waited for. It answers within some milliseconds.
constexpr auto patience = std::chrono::milliseconds(500);
/// After an iconification no window is active for about a millisecond.
constexpr auto activationGap = std::chrono::milliseconds(50);

constexpr std::uint32_t iconicState = 3; // ICCCM 4.1.4

} // namespace

struct WindowSystem::Connection {
  xcb_connection_t* xcb = nullptr;
  xcb_ewmh_connection_t ewmh{};
  bool hasAtoms = false;
  int screen = 0;
  xcb_window_t root = 0;
  xcb_atom_t changeState = XCB_ATOM_NONE;
  std::mutex mutex;

  ~Connection() {
    if (hasAtoms)
      xcb_ewmh_connection_wipe(&ewmh);
    if (xcb != nullptr)
      xcb_disconnect(xcb);
  }

  bool isLost() const { return xcb_connection_has_error(xcb) != 0; }

  /// Client windows top first by the window manager's list; nothing when there is no window manager.
  std::optional<std::vector<xcb_window_t>> managedWindows() {
    xcb_ewmh_get_windows_reply_t list{};
    if (xcb_ewmh_get_client_list_stacking_reply(&ewmh, xcb_ewmh_get_client_list_stacking(&ewmh, screen), &list,
                                                nullptr) == 0)
      return std::nullopt;
    std::vector<xcb_window_t> windows(list.windows, list.windows + list.windows_len);
    xcb_ewmh_get_windows_reply_wipe(&list);
    std::ranges::reverse(windows); // the list goes from bottom to top
    return windows;
  }

  std::vector<xcb_window_t> unmanagedWindows() {
    const ReplyPointer<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(xcb, xcb_query_tree(xcb, root), nullptr));
    if (!tree)
      return {};
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    const auto count = static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()));
    std::vector<xcb_get_window_attributes_cookie_t> cookies;
    for (std::size_t each = 0; each < count; ++each)
      cookies.push_back(xcb_get_window_attributes(xcb, children[each]));
    std::vector<xcb_window_t> windows;
    for (std::size_t each = 0; each < count; ++each) {
      const ReplyPointer<xcb_get_window_attributes_reply_t> attributes(
          xcb_get_window_attributes_reply(xcb, cookies[each], nullptr));
      if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && attributes->override_redirect == 0)
        windows.push_back(children[each]);
    }
    std::ranges::reverse(windows);
    return windows;
  }

  xcb_window_t activeWindow(bool isManaged) {
    if (!isManaged) {
      const ReplyPointer<xcb_get_input_focus_reply_t> focus(
          xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
      return focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
    }
    xcb_window_t window = XCB_WINDOW_NONE;
    if (xcb_ewmh_get_active_window_reply(&ewmh, xcb_ewmh_get_active_window(&ewmh, screen), &window, nullptr) == 0)
      return XCB_WINDOW_NONE;
    return window;
  }

  std::vector<ClientWindow> windows() {
    const auto managed = managedWindows();
    const std::vector<xcb_window_t> ids = managed ? *managed : unmanagedWindows();
    struct Cookies {
      xcb_get_property_cookie_t pid, name, oldName, state;
    };
    std::vector<Cookies> cookies;
    for (const xcb_window_t id : ids)
      cookies.push_back({xcb_ewmh_get_wm_pid(&ewmh, id), xcb_ewmh_get_wm_name(&ewmh, id),
                         xcb_get_property(xcb, 0, id, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
                         xcb_ewmh_get_wm_state(&ewmh, id)});
    const xcb_window_t active = activeWindow(managed.has_value());
    std::vector<ClientWindow> result;
    for (std::size_t each = 0; each < ids.size(); ++each) {
      ClientWindow window{ids[each], 0, {}, true, ids[each] == active};
      std::uint32_t pid = 0;
      if (xcb_ewmh_get_wm_pid_reply(&ewmh, cookies[each].pid, &pid, nullptr) != 0)
        window.pid = static_cast<pid_t>(pid);
      window.name = nameFrom(cookies[each].name, cookies[each].oldName);
      window.isShown = !isHidden(cookies[each].state);
      result.push_back(std::move(window));
    }
    return result;
  }

  std::string nameFrom(xcb_get_property_cookie_t name, xcb_get_property_cookie_t oldName) {
    std::string text;
    xcb_ewmh_get_utf8_strings_reply_t reply{};
    if (xcb_ewmh_get_wm_name_reply(&ewmh, name, &reply, nullptr) != 0) {
      text.assign(reply.strings, reply.strings_len);
      xcb_ewmh_get_utf8_strings_reply_wipe(&reply);
    }
    const ReplyPointer<xcb_get_property_reply_t> old(xcb_get_property_reply(xcb, oldName, nullptr));
    if (text.empty() && old && old->format == 8)
      text.assign(static_cast<const char*>(xcb_get_property_value(old.get())),
                  static_cast<std::size_t>(xcb_get_property_value_length(old.get())));
    return text;
  }

  bool isHidden(xcb_get_property_cookie_t cookie) {
    xcb_ewmh_get_atoms_reply_t states{};
    if (xcb_ewmh_get_wm_state_reply(&ewmh, cookie, &states, nullptr) == 0)
      return false;
    const bool hidden = std::find(states.atoms, states.atoms + states.atoms_len, ewmh._NET_WM_STATE_HIDDEN) !=
                        states.atoms + states.atoms_len;
    xcb_ewmh_get_atoms_reply_wipe(&states);
    return hidden;
  }

  /// Waits until `isSo`, looking again whenever the root window reports a change.
  void await(std::chrono::milliseconds most, const std::function<bool()>& isSo) {
    const auto deadline = std::chrono::steady_clock::now() + most;
    while (!isSo() && !isLost()) {
      const auto left =
          std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
      if (left.count() <= 0)
        return;
      // States of single windows change without a word from the root, so look again every now and then.
      pollfd descriptor{xcb_get_file_descriptor(xcb), POLLIN, 0};
      poll(&descriptor, 1, static_cast<int>(std::min<std::int64_t>(left.count(), 10)));
      while (ReplyPointer<xcb_generic_event_t> event{xcb_poll_for_event(xcb)}) {
      }
    }
  }

  void requestIconic(xcb_window_t window) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = changeState;
    message.data.data32[0] = iconicState;
    xcb_send_event(xcb, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
  }

  /// Whether all of these are open, or all hidden and without the keyboard.
  bool allShown(const std::vector<std::uint32_t>& ids, bool shown) {
    const std::vector<ClientWindow> now = windows();
    return std::ranges::all_of(ids, [&](std::uint32_t id) {
      const auto window = std::ranges::find(now, id, &ClientWindow::id);
      // A window that has just been hidden may be told as active for a moment more.
      return window == now.end() || (window->isShown == shown && (shown || !window->isActive));
    });
  }
};

WindowSystem::WindowSystem(std::unique_ptr<Connection> connection) : connection_(std::move(connection)) {}
WindowSystem::~WindowSystem() = default;

std::unique_ptr<WindowSystem> WindowSystem::connect(const std::string& display) {
  auto connection = std::make_unique<Connection>();
  connection->xcb = xcb_connect(display.empty() ? nullptr : display.c_str(), &connection->screen);
  if (connection->isLost())
    return nullptr;
  if (xcb_ewmh_init_atoms_replies(&connection->ewmh, xcb_ewmh_init_atoms(connection->xcb, &connection->ewmh),
                                  nullptr) == 0)
    return nullptr;
  connection->hasAtoms = true;
  connection->root = connection->ewmh.screens[connection->screen]->root;
  const ReplyPointer<xcb_intern_atom_reply_t> atom(
      xcb_intern_atom_reply(connection->xcb, xcb_intern_atom(connection->xcb, 0, 15, "WM_CHANGE_STATE"), nullptr));
  if (!atom)
    return nullptr;
  connection->changeState = atom->atom;
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection->xcb, connection->root, XCB_CW_EVENT_MASK, &mask);
  return std::unique_ptr<WindowSystem>(new WindowSystem(std::move(connection)));
}

std::vector<ClientWindow> WindowSystem::windows() {
  const std::lock_guard lock(connection_->mutex);
  std::vector<ClientWindow> result = connection_->windows();
  const auto settled = [&] {
    return std::ranges::none_of(result, &ClientWindow::isShown) || std::ranges::any_of(result, &ClientWindow::isActive);
  };
  if (!settled())
    connection_->await(activationGap, [&] {
      result = connection_->windows();
      return settled();
    });
  return result;
}

void WindowSystem::activate(std::uint32_t window) {
  const std::lock_guard lock(connection_->mutex);
  const bool isManaged = connection_->managedWindows().has_value();
  if (isManaged) {
    xcb_ewmh_request_change_active_window(&connection_->ewmh, connection_->screen, window,
                                          XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER, XCB_CURRENT_TIME, XCB_WINDOW_NONE);
  } else {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_->xcb, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_set_input_focus(connection_->xcb, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  }
  xcb_flush(connection_->xcb);
  connection_->await(patience, [&] { return connection_->activeWindow(isManaged) == window; });
}

void WindowSystem::iconify(const std::vector<std::uint32_t>& windows) {
  const std::lock_guard lock(connection_->mutex);
  // Back ones first, lest one of the same application becomes active in between.
  for (auto window = windows.rbegin(); window != windows.rend(); ++window)
    connection_->requestIconic(*window);
  xcb_flush(connection_->xcb);
  connection_->await(patience, [&] { return connection_->allShown(windows, false); });
}

void WindowSystem::open(const std::vector<std::uint32_t>& windows) {
  const std::lock_guard lock(connection_->mutex);
  for (auto window = windows.rbegin(); window != windows.rend(); ++window)
    xcb_map_window(connection_->xcb, *window);
  xcb_flush(connection_->xcb);
  connection_->await(patience, [&] { return connection_->allShown(windows, true); });
}

} // namespace tabwright::scripting
