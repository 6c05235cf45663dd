// One connection, on which all questions about all windows are asked before the first answer is awaited. A change is
// asked of the window manager by a message to the root window, and then awaited by watching the root's properties.
// Without a window manager, what it would keep is kept here: which windows are hidden.
#include "scripting/systemevents/WindowSystem.h"

#include "platform/Mutex.h"
#include "scripting/systemevents/ClientProcesses.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <initializer_list>
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
  std::vector<xcb_window_t> hiddenByUs GUARDED_BY(mutex); // without a window manager
  platform::Mutex mutex;

  ~Connection() {
    if (hasAtoms)
      xcb_ewmh_connection_wipe(&ewmh);
    if (xcb)
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

  /// Children of the root, top first, then those that we have hidden.
  std::vector<xcb_window_t> unmanagedWindows() REQUIRES(mutex) {
    const ReplyPointer<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(xcb, xcb_query_tree(xcb, root), nullptr));
    if (!tree)
      return {};
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    const auto count = static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()));
    std::vector<xcb_get_window_attributes_cookie_t> cookies;
    cookies.reserve(count);
    for (std::size_t each = 0; each < count; ++each)
      cookies.push_back(xcb_get_window_attributes(xcb, children[each]));
    std::vector<xcb_window_t> windows, hidden;
    for (std::size_t each = count; each-- > 0;) {
      const ReplyPointer<xcb_get_window_attributes_reply_t> attributes(
          xcb_get_window_attributes_reply(xcb, cookies[each], nullptr));
      if (!attributes || attributes->override_redirect != 0)
        continue;
      if (attributes->map_state == XCB_MAP_STATE_VIEWABLE)
        windows.push_back(children[each]);
      else if (std::ranges::find(hiddenByUs, children[each]) != hiddenByUs.end())
        hidden.push_back(children[each]);
    }
    hiddenByUs = std::move(hidden);
    windows.insert(windows.end(), hiddenByUs.begin(), hiddenByUs.end());
    return windows;
  }

  xcb_window_t activeWindow(bool isManaged) {
    if (!isManaged) {
      const ReplyPointer<xcb_get_input_focus_reply_t> focus(
          xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
      return focus ? topLevelOf(focus->focus) : xcb_window_t{XCB_WINDOW_NONE};
    }
    xcb_window_t window = XCB_WINDOW_NONE;
    if (xcb_ewmh_get_active_window_reply(&ewmh, xcb_ewmh_get_active_window(&ewmh, screen), &window, nullptr) == 0)
      return XCB_WINDOW_NONE;
    return window;
  }

  /// Toolkits may give the keyboard to a window within the one that is seen.
  xcb_window_t topLevelOf(xcb_window_t window) {
    while (window != XCB_WINDOW_NONE && window != XCB_INPUT_FOCUS_POINTER_ROOT && window != root) {
      const ReplyPointer<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(xcb, xcb_query_tree(xcb, window), nullptr));
      if (!tree)
        break;
      if (tree->parent == root)
        return window;
      window = tree->parent;
    }
    return XCB_WINDOW_NONE;
  }

  std::vector<ClientWindow> windows() REQUIRES(mutex) {
    const auto managed = managedWindows();
    const std::vector<xcb_window_t> ids = managed ? *managed : unmanagedWindows();
    struct Cookies {
      xcb_get_property_cookie_t pid, name, oldName, windowClass, state, type;
    };
    std::vector<Cookies> cookies;
    cookies.reserve(ids.size());
    for (const xcb_window_t id : ids)
      cookies.push_back({xcb_ewmh_get_wm_pid(&ewmh, id), xcb_ewmh_get_wm_name(&ewmh, id),
                         xcb_get_property(xcb, 0, id, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
                         xcb_get_property(xcb, 0, id, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256),
                         xcb_ewmh_get_wm_state(&ewmh, id), xcb_ewmh_get_wm_window_type(&ewmh, id)});
    const xcb_window_t active = activeWindow(managed.has_value());
    std::vector<ClientWindow> result;
    for (std::size_t each = 0; each < ids.size(); ++each) {
      ClientWindow window{ids[each], 0, {}, {}, true, ids[each] == active};
      std::uint32_t pid = 0;
      if (xcb_ewmh_get_wm_pid_reply(&ewmh, cookies[each].pid, &pid, nullptr) != 0)
        window.pid = static_cast<pid_t>(pid);
      window.name = nameFrom(cookies[each].name, cookies[each].oldName);
      window.windowClass = classFrom(cookies[each].windowClass);
      window.isShown = !hasAtom<xcb_ewmh_get_wm_state_reply>(cookies[each].state, {ewmh._NET_WM_STATE_HIDDEN}) &&
                       (managed || std::ranges::find(hiddenByUs, ids[each]) == hiddenByUs.end());
      if (!hasAtom<xcb_ewmh_get_wm_window_type_reply>(
              cookies[each].type, {ewmh._NET_WM_WINDOW_TYPE_DESKTOP, ewmh._NET_WM_WINDOW_TYPE_DOCK}))
        result.push_back(std::move(window));
    }
    tellProcesses(xcb, result);
    return result;
  }

  std::string nameFrom(xcb_get_property_cookie_t name, xcb_get_property_cookie_t oldName) {
    std::string text;
    xcb_ewmh_get_utf8_strings_reply_t reply{};
    if (xcb_ewmh_get_wm_name_reply(&ewmh, name, &reply, nullptr) != 0) {
      text.assign(reply.strings, reply.strings_len);
      xcb_ewmh_get_utf8_strings_reply_wipe(&reply);
    }
    const std::string old = textFrom(oldName);
    if (text.empty())
      text = old;
    return text;
  }

  /// WM_CLASS holds an instance and a class, each with a null behind it (ICCCM 4.1.2.5).
  std::string classFrom(xcb_get_property_cookie_t cookie) {
    const std::string text = textFrom(cookie);
    const std::size_t end = text.find('\0');
    return end == std::string::npos ? std::string() : std::string(text.c_str() + end + 1);
  }

  std::string textFrom(xcb_get_property_cookie_t cookie) {
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, cookie, nullptr));
    if (!reply || reply->format != 8)
      return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
  }

  /// True when a property that is a list of atoms holds one of these.
  template <auto Reply>
  bool hasAtom(xcb_get_property_cookie_t cookie, std::initializer_list<xcb_atom_t> wanted) {
    xcb_ewmh_get_atoms_reply_t list{};
    if (Reply(&ewmh, cookie, &list, nullptr) == 0)
      return false;
    const bool isThere = std::find_first_of(list.atoms, list.atoms + list.atoms_len, wanted.begin(), wanted.end()) !=
                         list.atoms + list.atoms_len;
    xcb_ewmh_get_atoms_reply_wipe(&list);
    return isThere;
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

  /// True when a window has the keyboard, or none is shown that could have it.
  bool isSettled() REQUIRES(mutex) {
    const std::vector<ClientWindow> now = windows();
    return std::ranges::none_of(now, &ClientWindow::isShown) || std::ranges::any_of(now, &ClientWindow::isActive);
  }

  /// True when all of these are open, or all hidden and without the keyboard.
  bool allShown(const std::vector<std::uint32_t>& ids, bool shown) REQUIRES(mutex) {
    const std::vector<ClientWindow> now = windows();
    return std::ranges::all_of(ids, [&](std::uint32_t id) {
      const auto window = std::ranges::find(now, id, &ClientWindow::id);
      // A window that has just been hidden may count as active for a moment more.
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
  const platform::MutexLock lock(connection_->mutex);
  return connection_->windows();
}

void WindowSystem::activate(std::uint32_t window) {
  const platform::MutexLock lock(connection_->mutex);
  const bool isManaged = connection_->managedWindows().has_value();
  if (isManaged) {
    xcb_ewmh_request_change_active_window(&connection_->ewmh, connection_->screen, window,
                                          XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER, XCB_CURRENT_TIME, XCB_WINDOW_NONE);
  } else {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_map_window(connection_->xcb, window);
    xcb_configure_window(connection_->xcb, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_set_input_focus(connection_->xcb, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  }
  xcb_flush(connection_->xcb);
  connection_->await(patience, [&] { return connection_->activeWindow(isManaged) == window; });
}

void WindowSystem::iconify(const std::vector<std::uint32_t>& windows) {
  const platform::MutexLock lock(connection_->mutex);
  const bool isManaged = connection_->managedWindows().has_value();
  // Back ones first: otherwise one of the same application becomes active in between.
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (isManaged) {
      connection_->requestIconic(*window);
    } else {
      xcb_unmap_window(connection_->xcb, *window);
      connection_->hiddenByUs.push_back(*window);
    }
  }
  xcb_flush(connection_->xcb);
  connection_->await(patience, [&]() REQUIRES(connection_->mutex) { return connection_->allShown(windows, false); });
  if (isManaged)
    connection_->await(activationGap, [&]() REQUIRES(connection_->mutex) { return connection_->isSettled(); });
}

void WindowSystem::open(const std::vector<std::uint32_t>& windows) {
  const platform::MutexLock lock(connection_->mutex);
  for (auto window = windows.rbegin(); window != windows.rend(); ++window)
    xcb_map_window(connection_->xcb, *window);
  xcb_flush(connection_->xcb);
  connection_->await(patience, [&]() REQUIRES(connection_->mutex) { return connection_->allShown(windows, true); });
}

} // namespace tabwright::scripting
