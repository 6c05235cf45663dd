#pragma once

#include "platform/Accessibility.h"
#include "platform/CallLimits.h"
#include "platform/Rectangle.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::scripting {

/// A top-level window of an application, as the window system tells it. `place` is in pixels of the screen, without the
/// frame.
struct DesktopWindow {
  std::uint32_t id = 0; ///< the window system's own
  std::string name;
  platform::Rectangle place{};
  bool isShown = true; ///< not minimised
  bool isActive = false;
  bool isFullScreen = false;
  std::uint32_t dialogOf = 0; ///< of a modal dialog: the window of the same process that waits for it
  pid_t shownBy = 0;          ///< the process whose element it is, where that is another one than its own
};

/// A running application with windows, or one that is known to be an application without any.
struct DesktopProcess {
  pid_t pid = 0;
  std::string name;             ///< as users know it, such as "Chromium"
  std::string bundleIdentifier; ///< in lower case; the process's name for an application without one
  bool isFrontmost = false;
  bool isVisible = false;             ///< at least one window is shown
  bool isHeadless = false;            ///< a browser that runs without any display
  std::vector<DesktopWindow> windows; ///< front to back, iconified ones in their place
};

/// One entry of a menu bar or a menu.
struct MenuEntry {
  std::string name; ///< empty for a separator
  bool isEnabled = true;
  bool hasMenu = false; ///< whether a menu opens from it
};

/// The way to an entry from the menu bar: 0-based positions, of the menu bar item first. Empty: the menu bar itself.
using MenuPath = std::span<const std::size_t>;

/// The menus and the elements in the windows of applications. A source of its own, since reading them takes more than
/// windows and keys.
class DesktopElements {
public:
  virtual ~DesktopElements() = default;

  /// Entries of the menu bar (empty path) or of the menu that the entry at `path` opens, in their order, separators
  /// among them. Most applications are read without opening anything on the screen. Empty for an entry without a menu.
  /// Throws a platform::Failure for an application without a menu bar.
  [[nodiscard]] virtual std::vector<MenuEntry> menuEntries(const DesktopProcess& process, MenuPath path,
                                                           const platform::CallLimits& limits) = 0;
  /// Chooses a menu item, as a click on it would. Throws a platform::Failure when it is there no more.
  virtual void chooseMenuItem(const DesktopProcess& process, MenuPath path, const platform::CallLimits& limits) = 0;

  /// The element that a process's windows are children of, for `accessibility`. An application that shows its elements
  /// only when it is told to is told. Throws a platform::Failure for one that doesn't show itself.
  [[nodiscard]] virtual platform::AccessibleElement application(const DesktopProcess& process,
                                                                const platform::CallLimits& limits) = 0;
  /// For reading and operating what `application` leads to; lives as long as this.
  [[nodiscard]] virtual platform::Accessibility& accessibility() = 0;
};

/// By their names on a Mac's keyboard.
enum class ModifierKey { command, option, control, shift };
enum class Visibility { hidden, shown };
enum class KeyTransition { down, up };

/// The desktop from outside: its applications, their windows and menus, and the keyboard.
///
///     for (const DesktopProcess& process : desktop.processes()) …
///     desktop.keystroke("x", std::array{ModifierKey::command}, limits);
///
/// All calls may come from several threads, block briefly, and throw a platform::Failure with a sentence for the user
/// when the desktop can't do what is asked. A process that is gone is no error of reading, and one of writing.
class Desktop {
public:
  virtual ~Desktop() = default;

  /// The running applications, frontmost first, then in the order of their frontmost windows. Where the windows can't
  /// be seen those that are known without them are left; none at all is no error.
  [[nodiscard]] virtual std::vector<DesktopProcess> processes() = 0;

  /// The first of them, if it is frontmost, as it was at most a moment ago. For who asks before each key that is
  /// pressed: a look at all takes longer than a key.
  [[nodiscard]] virtual std::optional<DesktopProcess> frontmost() = 0;

  /// Brings the process's frontmost window to the front of the desktop and gives it the keyboard. Throws for a process
  /// without windows, unless there is no window system and it counts as frontmost.
  virtual void activate(pid_t process) = 0;
  /// Hides all windows of a process by minimising them, or shows them again. When it returns, the window system has
  /// done so, and the next application is frontmost. Throws for a process without windows.
  virtual void setVisible(pid_t process, Visibility visibility) = 0;

  // Single windows, by their ids. One that is gone is no error of anything but `place`.

  /// Brings a window to the front and gives it the keyboard.
  virtual void raise(std::uint32_t window) = 0;
  /// Minimises a window, or opens it again.
  virtual void setShown(std::uint32_t window, Visibility visibility) = 0;
  /// Moves a window and gives it another size, in pixels, without the frame. Throws for a window that is gone.
  virtual void place(std::uint32_t window, const platform::Rectangle& place) = 0;
  /// Lets a window fill the screen, or gives it its former place again.
  virtual void setFullScreen(std::uint32_t window, bool isFullScreen) = 0;
  /// Asks a window to close; it may ask the user to save first.
  virtual void close(std::uint32_t window) = 0;

  /// Lives as long as the desktop.
  [[nodiscard]] virtual DesktopElements& elements() = 0;

  /// Clicks at a place on the screen, in its pixels.
  virtual void clickAt(int x, int y) = 0;
  /// True when the desktop wants dark windows.
  [[nodiscard]] virtual bool isDark() = 0;
  /// For all applications that follow the desktop.
  virtual void setDark(bool isDark) = 0;

  /// Types a text, UTF-8, into the application that has the keyboard, one character after the other, with modifiers
  /// held down. Throws before anything is typed for a text with characters that no key can stand for.
  virtual void keystroke(const std::string& text, std::span<const ModifierKey> modifiers,
                         const platform::CallLimits& limits) = 0;
  /// Presses and releases the key of a macOS virtual key code (36 is return, 48 tab, 53 escape). Throws for a code that
  /// no key has.
  virtual void keyCode(int code, std::span<const ModifierKey> modifiers, const platform::CallLimits& limits) = 0;
  /// Presses modifier keys, which stay pressed, or releases them. One that isn't pressed may be released.
  virtual void modifiers(KeyTransition transition, std::span<const ModifierKey> keys) = 0;
};

} // namespace tabwright::scripting
