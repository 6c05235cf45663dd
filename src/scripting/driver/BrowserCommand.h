#pragma once

#include "platform/CallLimits.h"
#include "scripting/driver/BrowserState.h"
#include "scripting/driver/PageKeys.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace tabwright::scripting {

using platform::CallLimits; ///< until when a browser may be waited for

// The commands that a browser carries out, one struct each. A new one is a struct here, an alternative below, and a
// handler where it is carried out: in both views or on both roads for what these do in their own ways, in BrowserLink
// for what is made of others. The compiler names the places.

/// Opens a tab at the end of the window's strip, or at a 0-based index, showing `url` (absolute, or refused; empty: the
/// new tab page), and makes it the window's active tab. Does not raise the window. Its number is the tab's id.
struct MakeTab {
  WindowID window = 0;
  std::optional<std::size_t> index;
  std::string url;
};
/// Opens a window with one tab, in front. Its number is the window's id. Without an address the browser chooses the
/// page. `refused` for a private window in a browser that shows none to its helper.
struct MakeWindow {
  WindowMode mode = WindowMode::normal;
  std::string url;
};
/// Closes a tab; its page may ask the user first. With the last tab the browser may end, which is no failure.
struct CloseTab {
  TabID tab = 0;
};
/// Closes a window with all its tabs, or a window of developer tools.
struct CloseWindow {
  WindowID window = 0;
};
/// Makes the tab its window's active one, without raising the window where the browser can.
struct ActivateTab {
  TabID tab = 0;
};
/// Brings the window to the front of the browser's windows, and of the desktop's.
struct RaiseWindow {
  WindowID window = 0;
};
/// Keeps a name for the window, for as long as it lives, across connections. An empty one takes the name away.
struct SetGivenName {
  WindowID window = 0;
  std::string name;
};

/// Starts loading an address; done when the navigation has begun, not when the page is there. An address of the scheme
/// `javascript` is run in the page.
struct Navigate {
  TabID tab = 0;
  std::string url;
};
/// Towards the page before, or the one that was left by going back.
enum class History { back, forward };
/// Goes one page back or forth; a navigation under way arrives first. Does nothing at the end of the history, as the
/// browser's own buttons. Unlike these, it stops at pages on which the user has done nothing.
struct GoInHistory {
  TabID tab = 0;
  History direction = History::back;
};
/// Begins to load the page anew; brings a crashed one back.
struct Reload {
  TabID tab = 0;
};
/// Ends all loading of the page, and a navigation that is under way.
struct StopLoading {
  TabID tab = 0;
};

/// Plays keys to the tab's page, one after the other. Its number is 1 when the page has taken them; 0 when it hasn't
/// the keyboard, as while the address bar has it, and nothing was played. Without keys it only asks.
struct PlayKeys {
  TabID tab = 0;
  std::vector<PageKey> keys;
  platform::KeyModifiers modifiers;
  bool hasKeyboard = false; ///< the page takes them whatever it says, as in a browser without windows
};

/// Moves a window and gives it another size, in device-independent pixels. It is in its normal shape afterwards.
struct SetBounds {
  WindowID window = 0;
  WindowBounds bounds;
};
/// The shapes that a window has one of.
enum class WindowShape { normal, minimized, fullScreen };
/// Each shape is reached by way of the normal one.
struct SetShape {
  WindowID window = 0;
  WindowShape shape = WindowShape::normal;
};

/// Brings the browser's front window to the front of the desktop. Does nothing for a browser without windows.
struct Activate {};
/// Shows the browser's own controls on the accessibility bus; see NativeControls.
struct ShowControls {};
/// Asks the browser to close all windows and end, and waits until it has.
struct Quit {};

/// The commands that a BrowserView carries out, each view in its own way.
using ViewCommand = std::variant<MakeTab, MakeWindow, CloseTab, CloseWindow, ActivateTab, RaiseWindow, SetGivenName>;

/// The commands that a BrowserRoad carries out, each road in its own way.
using RoadCommand =
    std::variant<Navigate, GoInHistory, Reload, StopLoading, PlayKeys, SetBounds, SetShape, ShowControls, Quit>;

/// All commands, those of views and roads among them.
using BrowserCommand =
    std::variant<MakeTab, MakeWindow, CloseTab, CloseWindow, ActivateTab, RaiseWindow, SetGivenName, Navigate,
                 GoInHistory, Reload, StopLoading, PlayKeys, SetBounds, SetShape, Activate, ShowControls, Quit>;

/// Hands the command to the handler of its kind. Yields what that yields; 0 where it yields nothing.
///
///     return dispatch(command, [&](const auto& each) { return carryOut(each, limits); });
template <class Command, class Handler>
std::int64_t dispatch(const Command& command, const Handler& handler) {
  return std::visit(
      [&](const auto& each) -> std::int64_t {
        if constexpr (!std::is_void_v<decltype(handler(each))>)
          return handler(each);
        else
          return handler(each), 0;
      },
      command);
}

} // namespace tabwright::scripting
