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
class KeyboardDisplay {
public:
  /// Throws DesktopFailure: `wayland`, `noWindowSystem`, `noKeyPresses`.
  explicit KeyboardDisplay(const std::string& display = {});
  ~KeyboardDisplay();

  [[nodiscard]] bool isLost() const { return display_.isLost(); }

  struct State {
    std::uint8_t group = 0; ///< in effect
    std::uint8_t lockedGroup = 0;
    std::uint8_t lockedModifiers = 0;
    std::vector<std::uint8_t> pressed; ///< keys, the user's and ours
  };
  [[nodiscard]] State state() const;

  /// Reads the layout, if it has changed since. Throws DesktopFailure.
  void refresh();
  /// The layout as of the last `refresh`, and valid until the next.
  [[nodiscard]] const KeyboardLayout& layout() const { return *layout_; }

  enum class Stroke { down, up };
  void strike(std::uint8_t keycode, Stroke stroke);
  void lockGroup(std::uint8_t group);
  /// Locks those of `affected` that are in `locked`, and unlocks the others.
  void lockModifiers(std::uint8_t affected, std::uint8_t locked);
  /// Gives a key this symbol alone, whatever the group and the modifiers; 0: none.
  void map(std::uint8_t keycode, std::uint32_t symbol);
  /// Sends what was kept back, and returns when the display has worked it off. Throws DesktopFailure.
  void send();

private:
  X11Display display_;
  struct Release {
    void operator()(xkb_context* context) const;
  };
  std::unique_ptr<xkb_context, Release> context_;
  std::unique_ptr<KeyboardLayout> layout_;
  std::uint8_t keyboardEvent_ = 0; ///< the number of the extension's events
};

} // namespace tabwright::platform
