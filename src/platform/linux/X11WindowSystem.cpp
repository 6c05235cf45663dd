// One connection, on which all questions about all windows are asked before the first answer is awaited. A change is
// asked of the window manager by a message to the root window, and then awaited by watching the root's properties.
// Without a window manager, what it would keep is kept here: which windows are hidden.
#include "platform/linux/X11WindowSystem.h"

#include "platform/DesktopFault.h"
#include "platform/linux/ClientProcesses.h"
#include "platform/linux/X11Display.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <optional>
#include <poll.h>
#include <tuple>
#include <utility>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace tabwright::platform {

namespace {

/// For how long a window manager is waited for. It answers within some milliseconds.
constexpr auto patience = std::chrono::milliseconds(500);
/// After an iconification no window is active for about a millisecond.
constexpr auto activationGap = std::chrono::milliseconds(50);

constexpr std::uint32_t iconicState = 3;             // ICCCM 4.1.4
constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF; // _NET_WM_DESKTOP
constexpr std::uint32_t staticGravity = 10;          // the place is that of the window itself, not of its frame
constexpr std::uint32_t sourceIsPager = 2;

} // namespace

class X11WindowSystem::Connection {
public:
  explicit Connection(const std::string& name) : display(name), xcb(display.connection()), screen(display.screen()) {
    if (xcb_ewmh_init_atoms_replies(&ewmh, xcb_ewmh_init_atoms(xcb, &ewmh), nullptr) == 0)
      throw failure(DesktopFault::noWindowSystem, "the display was lost");
    root = display.root();
    changeState = display.atom("WM_CHANGE_STATE");
    applicationID = display.atom("_GTK_APPLICATION_ID");
    protocols = display.atom("WM_PROTOCOLS");
    deleteWindow = display.atom("WM_DELETE_WINDOW");
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(xcb, root, XCB_CW_EVENT_MASK, &mask);
  }
  ~Connection() { xcb_ewmh_connection_wipe(&ewmh); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  const X11Display display;
  xcb_connection_t* const xcb;
  const int screen;
  xcb_ewmh_connection_t ewmh{};
  xcb_window_t root = 0;
  xcb_atom_t changeState, applicationID, protocols, deleteWindow;
  std::vector<xcb_window_t> hiddenByUs; // without a window manager

  bool isLost() const { return display.isLost(); }

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
  std::vector<xcb_window_t> unmanagedWindows() {
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

  std::vector<ClientWindow> windows() {
    const auto managed = managedWindows();
    const std::vector<xcb_window_t> ids = managed ? *managed : unmanagedWindows();
    struct Cookies {
      xcb_get_property_cookie_t pid, name, oldName, windowClass, application, state, type, workspace;
      xcb_get_geometry_cookie_t size;
      xcb_translate_coordinates_cookie_t origin;
    };
    std::vector<Cookies> cookies;
    cookies.reserve(ids.size());
    for (const xcb_window_t id : ids)
      cookies.push_back({xcb_ewmh_get_wm_pid(&ewmh, id), xcb_ewmh_get_wm_name(&ewmh, id),
                         xcb_get_property(xcb, 0, id, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
                         xcb_get_property(xcb, 0, id, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256),
                         xcb_get_property(xcb, 0, id, applicationID, XCB_GET_PROPERTY_TYPE_ANY, 0, 256),
                         xcb_ewmh_get_wm_state(&ewmh, id), xcb_ewmh_get_wm_window_type(&ewmh, id),
                         xcb_ewmh_get_wm_desktop(&ewmh, id), xcb_get_geometry(xcb, id),
                         xcb_translate_coordinates(xcb, id, root, 0, 0)});
    const xcb_window_t active = activeWindow(managed.has_value());
    std::vector<ClientWindow> result;
    for (std::size_t each = 0; each < ids.size(); ++each) {
      ClientWindow window;
      window.id = ids[each];
      window.isActive = ids[each] == active;
      std::uint32_t pid = 0;
      if (xcb_ewmh_get_wm_pid_reply(&ewmh, cookies[each].pid, &pid, nullptr) != 0)
        window.pid = static_cast<pid_t>(pid);
      window.name = nameFrom(cookies[each].name, cookies[each].oldName);
      std::tie(window.instance, window.windowClass) = classFrom(cookies[each].windowClass);
      window.applicationID = textFrom(cookies[each].application);
      window.place = placeFrom(cookies[each].size, cookies[each].origin).value_or(Rectangle{});
      window.workspace = workspaceFrom(cookies[each].workspace);
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
  std::pair<std::string, std::string> classFrom(xcb_get_property_cookie_t cookie) {
    const std::string text = textFrom(cookie);
    const std::size_t end = text.find('\0');
    return {text.c_str(), end == std::string::npos ? std::string() : std::string(text.c_str() + end + 1)};
  }

  std::optional<Rectangle> placeFrom(xcb_get_geometry_cookie_t size, xcb_translate_coordinates_cookie_t origin) {
    const ReplyPointer<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(xcb, size, nullptr));
    const ReplyPointer<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(xcb, origin, nullptr));
    if (!geometry || !corner)
      return std::nullopt;
    return Rectangle{corner->dst_x, corner->dst_y, geometry->width, geometry->height};
  }

  std::optional<Rectangle> placeOf(xcb_window_t window) {
    const auto size = xcb_get_geometry(xcb, window);
    return placeFrom(size, xcb_translate_coordinates(xcb, window, root, 0, 0));
  }

  std::string textFrom(xcb_get_property_cookie_t cookie) {
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, cookie, nullptr));
    if (!reply || reply->format != 8)
      return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
  }

  /// Whether a property that is a list of atoms holds one of these.
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

  std::optional<std::uint32_t> workspaceFrom(xcb_get_property_cookie_t cookie) {
    std::uint32_t workspace = 0;
    if (xcb_ewmh_get_wm_desktop_reply(&ewmh, cookie, &workspace, nullptr) == 0 || workspace == everyWorkspace)
      return std::nullopt;
    return workspace;
  }

  void goToWorkspaceOf(xcb_window_t window) {
    std::uint32_t current = 0;
    const auto cookie = xcb_ewmh_get_wm_desktop(&ewmh, window);
    const auto workspace = workspaceFrom(cookie);
    if (workspace &&
        xcb_ewmh_get_current_desktop_reply(&ewmh, xcb_ewmh_get_current_desktop(&ewmh, screen), &current, nullptr) !=
            0 &&
        current != *workspace)
      xcb_ewmh_request_change_current_desktop(&ewmh, screen, *workspace, XCB_CURRENT_TIME);
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

  /// Sends a message about a window: to the root, where the window manager reads it, or to the window itself.
  void send(xcb_window_t receiver, xcb_window_t window, xcb_atom_t type, std::initializer_list<std::uint32_t> data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::ranges::copy(data, message.data.data32);
    const std::uint32_t mask = receiver == root
                                   ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT
                                   : XCB_EVENT_MASK_NO_EVENT;
    xcb_send_event(xcb, 0, receiver, mask, reinterpret_cast<const char*>(&message));
  }

  /// Whether the keyboard has a place, or there is none for it.
  bool isSettled() {
    const std::vector<ClientWindow> now = windows();
    return std::ranges::none_of(now, &ClientWindow::isShown) || std::ranges::any_of(now, &ClientWindow::isActive);
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

X11WindowSystem::X11WindowSystem(std::string display) : display_(std::move(display)) {}
X11WindowSystem::~X11WindowSystem() = default;

X11WindowSystem::Connection& X11WindowSystem::connection() {
  if (!connection_ || connection_->isLost())
    connection_ = std::make_unique<Connection>(display_);
  return *connection_;
}

std::vector<ClientWindow> X11WindowSystem::windows() {
  const std::lock_guard lock(mutex_);
  return connection().windows();
}

void X11WindowSystem::activate(std::uint32_t window) {
  const std::lock_guard lock(mutex_);
  Connection& system = connection();
  const bool isManaged = system.managedWindows().has_value();
  if (isManaged) {
    system.goToWorkspaceOf(window); // not all managers do when a window there is activated
    xcb_ewmh_request_change_active_window(&system.ewmh, system.screen, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                          XCB_CURRENT_TIME, XCB_WINDOW_NONE);
  } else {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_map_window(system.xcb, window);
    xcb_configure_window(system.xcb, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_set_input_focus(system.xcb, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  }
  xcb_flush(system.xcb);
  system.await(patience, [&] { return system.activeWindow(isManaged) == window; });
}

void X11WindowSystem::minimise(const std::vector<std::uint32_t>& windows) {
  const std::lock_guard lock(mutex_);
  Connection& system = connection();
  const bool isManaged = system.managedWindows().has_value();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (isManaged) {
      system.send(system.root, *window, system.changeState, {iconicState});
    } else {
      xcb_unmap_window(system.xcb, *window);
      system.hiddenByUs.push_back(*window);
    }
  }
  xcb_flush(system.xcb);
  system.await(patience, [&] { return system.allShown(windows, false); });
  if (isManaged)
    system.await(activationGap, [&] { return system.isSettled(); });
}

void X11WindowSystem::restore(const std::vector<std::uint32_t>& windows) {
  const std::lock_guard lock(mutex_);
  Connection& system = connection();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window)
    xcb_map_window(system.xcb, *window);
  xcb_flush(system.xcb);
  system.await(patience, [&] { return system.allShown(windows, true); });
}

void X11WindowSystem::place(std::uint32_t window, const Rectangle& place) {
  const std::lock_guard lock(mutex_);
  Connection& system = connection();
  const std::optional<Rectangle> before = system.placeOf(window);
  if (!before)
    throw failure(DesktopFault::windowGone);
  const auto x = static_cast<std::uint32_t>(place.x), y = static_cast<std::uint32_t>(place.y),
             width = static_cast<std::uint32_t>(std::max(place.width, 1)),
             height = static_cast<std::uint32_t>(std::max(place.height, 1));
  if (system.managedWindows()) {
    constexpr std::uint32_t all = XCB_EWMH_MOVERESIZE_WINDOW_X | XCB_EWMH_MOVERESIZE_WINDOW_Y |
                                  XCB_EWMH_MOVERESIZE_WINDOW_WIDTH | XCB_EWMH_MOVERESIZE_WINDOW_HEIGHT;
    system.send(system.root, window, system.ewmh._NET_MOVERESIZE_WINDOW,
                {staticGravity | all | sourceIsPager << 12, x, y, width, height});
  } else {
    const std::uint32_t values[]{x, y, width, height};
    xcb_configure_window(system.xcb, window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         values);
  }
  xcb_flush(system.xcb);
  // A size that the application rounds never becomes the one asked for, so any change ends the waiting.
  if (place != *before)
    system.await(patience, [&] { return system.placeOf(window) != before; });
}

void X11WindowSystem::close(std::uint32_t window) {
  const std::lock_guard lock(mutex_);
  Connection& system = connection();
  if (system.managedWindows())
    xcb_ewmh_request_close_window(&system.ewmh, system.screen, window, XCB_CURRENT_TIME,
                                  XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
  else
    system.send(window, window, system.protocols, {system.deleteWindow});
  xcb_flush(system.xcb);
}

} // namespace tabwright::platform
