#pragma once

#include "platform/linux/KeyboardLayout.h"
#include "platform/linux/X11Display.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct xkb_context;

namespace tabwright::platform {

/// The keyboard as a display has it: its layout, its state, and single strokes on it. Strokes are kept back until
/// `send`, so that those that belong together leave together. For one thread at a time.
///
///     KeyboardDisplay display;
///     if (const auto place = display.layout().findCharacter('a', display.state().group)) {
///       display.strike(place->keycode, KeyboardDisplay::Stroke::down);
///       display.strike(place->keycode, KeyboardDisplay::Stroke::up);
///       display.send();
///     }
class KeyboardDisplay {
public:
  /// Throws DesktopFailure: `wayland`, `noWindowSystem`, `noKeyPresses`. Connects, and reads the layout. `display` as
  /// for X11Display.
  explicit KeyboardDisplay(const std::string& display = {});
  ~KeyboardDisplay();

  /// True when the display has gone: this object is of no more use.
  [[nodiscard]] bool isLost() const { return display_.isLost(); }

  /// The state of the whole keyboard at one moment, in numbers of the X Keyboard Extension.
  struct State {
    std::uint8_t group = 0; ///< in effect
    std::uint8_t lockedGroup = 0;
    std::uint8_t lockedModifiers = 0;
    std::vector<std::uint8_t> pressed; ///< keys, the user's and ours
  };
  /// Asks the display. Throws DesktopFailure: `noWindowSystem` when it was lost; `wayland` when the user is in a window
  /// to which no key of this display would go.
  [[nodiscard]] State state() const;

  /// Reads the layout, if it has changed since. Throws DesktopFailure. Asks nothing of the display unless it has
  /// announced a change.
  void refresh();
  /// The layout as of the last `refresh`, and valid until the next.
  [[nodiscard]] const KeyboardLayout& layout() const { return *layout_; }

  enum class Stroke { down, up };
  /// `keycode` is X11's, 8 more than the kernel's. A key that is struck down stays down until it is struck up.
  void strike(std::uint8_t keycode, Stroke stroke);
  /// Makes a group of the layout the one in effect, as the user's switch does.
  void lockGroup(std::uint8_t group);
  /// Locks those of `affected` that are in `locked`, and unlocks the others. Bits are those of X11's real modifiers,
  /// such as 2 for CapsLock.
  void lockModifiers(std::uint8_t affected, std::uint8_t locked);
  /// Gives a key this symbol alone, whatever the group and the modifiers; 0: none. All programs are told of it.
  void map(std::uint8_t keycode, std::uint32_t symbol);
  /// Sends what was kept back, and returns when the display has worked it off. Throws DesktopFailure.
  void send();

private:
  X11Display display_;
  /// Frees the library's context, which layouts are read with.
  struct Release {
    void operator()(xkb_context* context) const;
  };
  std::unique_ptr<xkb_context, Release> context_;
  /// Never null once this is made.
  std::unique_ptr<KeyboardLayout> layout_;
  std::uint8_t keyboardEvent_ = 0; ///< the number of the extension's events
};

} // namespace tabwright::platform
