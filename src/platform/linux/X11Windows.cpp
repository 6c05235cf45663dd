// All questions about all windows are asked before the first answer is awaited. So a reading costs some round trips,
// not some for each window. Windows may come and go between list and answers: one that has gone gives empty answers,
// and isn't told under a window manager, since it has no state any more.
#include "platform/linux/X11Windows.h"

#include "platform/AsciiCase.h"
#include "platform/DesktopFault.h"
#include "platform/linux/ClientProcesses.h"

#include <algorithm>
#include <initializer_list>
#include <poll.h>
#include <string_view>
#include <tuple>
#include <utility>
#include <xcb/xcb.h>

namespace tabwright::platform {

namespace {

constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF; // _NET_WM_DESKTOP
/// WM_STATE (ICCCM 4.1.3.1). A window that is being closed may be listed for a moment more, and has none then.
constexpr std::uint32_t withdrawn = 0;

std::string textFrom(xcb_connection_t* xcb, xcb_get_property_cookie_t cookie) {
  const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, cookie, nullptr));
  if (!reply || reply->format != 8)
    return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::string nameFrom(xcb_ewmh_connection_t* ewmh, xcb_get_property_cookie_t name, xcb_get_property_cookie_t oldName) {
  std::string text;
  xcb_ewmh_get_utf8_strings_reply_t reply{};
  if (xcb_ewmh_get_wm_name_reply(ewmh, name, &reply, nullptr) != 0) {
    text.assign(reply.strings, reply.strings_len);
    xcb_ewmh_get_utf8_strings_reply_wipe(&reply);
  }
  // Older programs set only the name of ICCCM. Its answer has to be taken in either case.
  const std::string old = textFrom(ewmh->connection, oldName);
  return text.empty() ? old : text;
}

/// WM_CLASS holds an instance and a class, each with a null behind it (ICCCM 4.1.2.5).
std::pair<std::string, std::string> classFrom(const std::string& text) {
  const std::size_t end = text.find('\0');
  return {text.c_str(), end == std::string::npos ? std::string() : std::string(text.c_str() + end + 1)};
}

std::optional<Rectangle> placeFrom(xcb_connection_t* xcb, xcb_get_geometry_cookie_t size,
                                   xcb_translate_coordinates_cookie_t origin) {
  const ReplyPointer<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(xcb, size, nullptr));
  const ReplyPointer<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(xcb, origin, nullptr));
  if (!geometry || !corner)
    return std::nullopt;
  return Rectangle{corner->dst_x, corner->dst_y, geometry->width, geometry->height};
}

std::optional<std::uint32_t> workspaceFrom(xcb_ewmh_connection_t* ewmh, xcb_get_property_cookie_t cookie) {
  std::uint32_t workspace = 0;
  if (xcb_ewmh_get_wm_desktop_reply(ewmh, cookie, &workspace, nullptr) == 0 || workspace == everyWorkspace)
    return std::nullopt;
  return workspace;
}

/// A property that is a list of atoms; empty when it isn't there.
template <auto Reply>
std::vector<xcb_atom_t> atomsFrom(xcb_ewmh_connection_t* ewmh, xcb_get_property_cookie_t cookie) {
  xcb_ewmh_get_atoms_reply_t list{};
  if (Reply(ewmh, cookie, &list, nullptr) == 0)
    return {};
  std::vector<xcb_atom_t> atoms(list.atoms, list.atoms + list.atoms_len);
  xcb_ewmh_get_atoms_reply_wipe(&list);
  return atoms;
}

/// A property that is one number, as a window is; 0 when it isn't there.
std::uint32_t numberFrom(xcb_connection_t* xcb, xcb_get_property_cookie_t cookie) {
  const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, cookie, nullptr));
  if (!reply || xcb_get_property_value_length(reply.get()) != sizeof(std::uint32_t))
    return 0;
  return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
}

/// A property that is a list of windows; nothing when it isn't there.
template <auto Reply>
std::optional<std::vector<std::uint32_t>> windowsFrom(xcb_ewmh_connection_t* ewmh, xcb_get_property_cookie_t cookie) {
  xcb_ewmh_get_windows_reply_t list{};
  if (Reply(ewmh, cookie, &list, nullptr) == 0)
    return std::nullopt;
  std::vector<std::uint32_t> windows(list.windows, list.windows + list.windows_len);
  xcb_ewmh_get_windows_reply_wipe(&list);
  return windows;
}

/// Applications have their file choosers and the like shown by the desktop's portal. To its user such a dialog is the
/// application's, which only the portal itself may claim.
void giveToOwners(std::vector<ClientWindow>& windows) {
  constexpr std::string_view portal = "xdg-desktop-portal";
  for (ClientWindow& window : windows) {
    if (window.dialogOf == 0 || !equalIgnoringCase(window.windowClass.substr(0, portal.size()), portal))
      continue;
    const auto owner = std::ranges::find(windows, window.dialogOf, &ClientWindow::id);
    if (owner == windows.end() || owner->pid == 0)
      continue;
    window.shownBy = window.pid;
    window.pid = owner->pid;
    window.windowClass = owner->windowClass;
    window.instance = owner->instance;
    window.applicationID = owner->applicationID;
  }
}

} // namespace

X11Windows::X11Windows(const std::string& display) : display_(display), xcb_(display_.connection()) {
  if (xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(xcb_, &ewmh_), nullptr) == 0)
    throw failure(DesktopFault::noWindowSystem, "the display was lost");
  applicationID_ = display_.atom("_GTK_APPLICATION_ID");
  stage_ = display_.atom("WM_STATE");
}

X11Windows::~X11Windows() {
  xcb_ewmh_connection_wipe(&ewmh_);
}

/// Top first, by the window manager's list; nothing when there is no window manager. While a manager restacks windows
/// it may leave some out of that list, which its other one, in the order of their opening, still has. Some, such as
/// Xfce's, have none until windows are restacked for the first time: then the newest are on top.
std::optional<std::vector<std::uint32_t>> X11Windows::managedWindows() {
  constexpr int mostLooks = 10;
  for (int look = 1;; ++look) {
    const auto stackedCookie = xcb_ewmh_get_client_list_stacking(&ewmh_, display_.screen());
    const auto openedCookie = xcb_ewmh_get_client_list(&ewmh_, display_.screen());
    auto stacked = windowsFrom<xcb_ewmh_get_client_list_stacking_reply>(&ewmh_, stackedCookie);
    const auto opened = windowsFrom<xcb_ewmh_get_client_list_reply>(&ewmh_, openedCookie);
    if (!stacked && opened)
      stacked = opened;
    if (!stacked || !opened || stacked->size() >= opened->size() || look == mostLooks) {
      if (stacked)
        std::ranges::reverse(*stacked); // the list goes from bottom to top
      return stacked;
    }
    poll(nullptr, 0, 2);
  }
}

bool X11Windows::isManaged() {
  return managedWindows().has_value();
}

bool X11Windows::isHidden(std::uint32_t window) const {
  return std::ranges::find(hidden_, window) != hidden_.end();
}

/// Children of the root, top first, then those that we have hidden.
std::vector<std::uint32_t> X11Windows::unmanagedWindows() {
  const ReplyPointer<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(xcb_, xcb_query_tree(xcb_, display_.root()), nullptr));
  if (!tree)
    return {};
  const xcb_window_t* children = xcb_query_tree_children(tree.get());
  const auto count = static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()));
  std::vector<xcb_get_window_attributes_cookie_t> cookies;
  cookies.reserve(count);
  for (std::size_t each = 0; each < count; ++each)
    cookies.push_back(xcb_get_window_attributes(xcb_, children[each]));
  std::vector<std::uint32_t> windows, hidden;
  for (std::size_t each = count; each-- > 0;) {
    const ReplyPointer<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb_, cookies[each], nullptr));
    // Menus and tooltips, which no window manager would manage either.
    if (!attributes || attributes->override_redirect != 0)
      continue;
    if (attributes->map_state == XCB_MAP_STATE_VIEWABLE)
      windows.push_back(children[each]);
    else if (isHidden(children[each]))
      hidden.push_back(children[each]);
  }
  // Those that have been shown again or are gone are forgotten.
  hidden_ = std::move(hidden);
  windows.insert(windows.end(), hidden_.begin(), hidden_.end());
  return windows;
}

std::uint32_t X11Windows::active() {
  return active(isManaged());
}

std::uint32_t X11Windows::active(bool isManaged) {
  if (!isManaged) {
    const ReplyPointer<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
    return focus ? topLevelOf(focus->focus) : std::uint32_t{XCB_WINDOW_NONE};
  }
  xcb_window_t window = XCB_WINDOW_NONE;
  if (xcb_ewmh_get_active_window_reply(&ewmh_, xcb_ewmh_get_active_window(&ewmh_, display_.screen()), &window,
                                       nullptr) == 0)
    return XCB_WINDOW_NONE;
  return window;
}

/// Toolkits may give the keyboard to a window within the one that is seen.
std::uint32_t X11Windows::topLevelOf(std::uint32_t window) {
  // The focus may also be a value that is no window.
  while (window != XCB_WINDOW_NONE && window != XCB_INPUT_FOCUS_POINTER_ROOT && window != display_.root()) {
    const ReplyPointer<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(xcb_, xcb_query_tree(xcb_, window), nullptr));
    if (!tree)
      break;
    if (tree->parent == display_.root())
      return window;
    window = tree->parent;
  }
  return XCB_WINDOW_NONE;
}

std::vector<ClientWindow> X11Windows::read() {
  const auto managed = managedWindows();
  const std::vector<std::uint32_t> ids = managed ? *managed : unmanagedWindows();
  struct Cookies {
    xcb_get_property_cookie_t pid, name, oldName, windowClass, application, state, type, workspace, owner, stage;
    xcb_get_geometry_cookie_t size;
    xcb_translate_coordinates_cookie_t origin;
  };
  std::vector<Cookies> cookies;
  cookies.reserve(ids.size());
  for (const std::uint32_t id : ids)
    cookies.push_back({xcb_ewmh_get_wm_pid(&ewmh_, id), xcb_ewmh_get_wm_name(&ewmh_, id),
                       xcb_get_property(xcb_, 0, id, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
                       xcb_get_property(xcb_, 0, id, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256),
                       xcb_get_property(xcb_, 0, id, applicationID_, XCB_GET_PROPERTY_TYPE_ANY, 0, 256),
                       xcb_ewmh_get_wm_state(&ewmh_, id), xcb_ewmh_get_wm_window_type(&ewmh_, id),
                       xcb_ewmh_get_wm_desktop(&ewmh_, id),
                       xcb_get_property(xcb_, 0, id, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, 0, 1),
                       xcb_get_property(xcb_, 0, id, stage_, stage_, 0, 1), xcb_get_geometry(xcb_, id),
                       xcb_translate_coordinates(xcb_, id, display_.root(), 0, 0)});
  const auto shownCookie = xcb_ewmh_get_current_desktop(&ewmh_, display_.screen());
  // Asked behind all other questions, whose answers are on their way meanwhile.
  const std::uint32_t activeWindow = active(managed.has_value());
  std::uint32_t shown = everyWorkspace;
  xcb_ewmh_get_current_desktop_reply(&ewmh_, shownCookie, &shown, nullptr);
  std::vector<ClientWindow> result;
  for (std::size_t each = 0; each < ids.size(); ++each) {
    ClientWindow window;
    window.id = ids[each];
    std::uint32_t pid = 0;
    if (xcb_ewmh_get_wm_pid_reply(&ewmh_, cookies[each].pid, &pid, nullptr) != 0)
      window.pid = static_cast<pid_t>(pid);
    window.name = nameFrom(&ewmh_, cookies[each].name, cookies[each].oldName);
    std::tie(window.instance, window.windowClass) = classFrom(textFrom(xcb_, cookies[each].windowClass));
    window.applicationID = textFrom(xcb_, cookies[each].application);
    const std::vector<xcb_atom_t> states = atomsFrom<xcb_ewmh_get_wm_state_reply>(&ewmh_, cookies[each].state);
    const auto isIn = [&](xcb_atom_t state) { return std::ranges::find(states, state) != states.end(); };
    window.isShown = !isIn(ewmh_._NET_WM_STATE_HIDDEN) && (managed || !isHidden(window.id));
    window.isFullScreen = isIn(ewmh_._NET_WM_STATE_FULLSCREEN);
    const std::uint32_t owner = numberFrom(xcb_, cookies[each].owner);
    const bool isLeaving = managed && numberFrom(xcb_, cookies[each].stage) == withdrawn;
    // Windows that only lie above their owner, such as tool windows, keep nobody waiting.
    window.dialogOf = isIn(ewmh_._NET_WM_STATE_MODAL) ? owner : 0;
    const std::vector<xcb_atom_t> types = atomsFrom<xcb_ewmh_get_wm_window_type_reply>(&ewmh_, cookies[each].type);
    const bool isOfTheDesktop = std::ranges::any_of(types, [&](xcb_atom_t type) {
      return type == ewmh_._NET_WM_WINDOW_TYPE_DESKTOP || type == ewmh_._NET_WM_WINDOW_TYPE_DOCK;
    });
    window.workspace = workspaceFrom(&ewmh_, cookies[each].workspace);
    window.isHere = shown == everyWorkspace || !window.workspace || *window.workspace == shown;
    window.place = placeFrom(xcb_, cookies[each].size, cookies[each].origin).value_or(Rectangle{});
    window.isActive = window.id == activeWindow;
    if (!isOfTheDesktop && !isLeaving)
      result.push_back(std::move(window));
  }
  tellProcesses(xcb_, result);
  giveToOwners(result);
  return result;
}

std::uint32_t X11Windows::ownerOf(std::uint32_t window) {
  return numberFrom(xcb_, xcb_get_property(xcb_, 0, window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, 0, 1));
}

std::optional<Rectangle> X11Windows::placeOf(std::uint32_t window) {
  const auto size = xcb_get_geometry(xcb_, window);
  return placeFrom(xcb_, size, xcb_translate_coordinates(xcb_, window, display_.root(), 0, 0));
}

std::optional<std::uint32_t> X11Windows::workspaceElsewhere(std::uint32_t window) {
  const auto wanted = xcb_ewmh_get_wm_desktop(&ewmh_, window);
  const auto shown = xcb_ewmh_get_current_desktop(&ewmh_, display_.screen());
  const auto workspace = workspaceFrom(&ewmh_, wanted);
  std::uint32_t current = 0;
  const bool isTold = xcb_ewmh_get_current_desktop_reply(&ewmh_, shown, &current, nullptr) != 0;
  return isTold && workspace && *workspace != current ? workspace : std::nullopt;
}

} // namespace tabwright::platform
