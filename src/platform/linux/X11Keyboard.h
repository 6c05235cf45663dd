#pragma once

#include "platform/Keyboard.h"

#include <memory>
#include <string>

namespace tabwright::platform {

/// The keyboard of an X11 display, played by its extensions XTEST and XKEYBOARD.
///
/// Connects when it is first asked something, and anew when the display was lost. Keys that are spare are given
/// characters that the layout doesn't have, and lose them again half a second after the last call and at the end of
/// this object; a process that is killed leaves them where they are, which no user's key can reach. Safe to use from
/// any thread: each call has its turn, and a long text keeps others waiting.
class X11Keyboard final : public Keyboard {
public:
  /// `display` is a display's name (":0"); empty: the one that DISPLAY names at the time of connecting.
  explicit X11Keyboard(std::string display = {});
  /// Lets go of held modifiers. A display that is lost is no error then.
  ~X11Keyboard() override;

  void press(const Key& key, const KeyModifiers& modifiers, const CallLimits& limits) override;
  void type(const std::string& text, const KeyModifiers& modifiers, const CallLimits& limits) override;
  void hold(const KeyModifiers& modifiers) override;
  void release(const KeyModifiers& modifiers) override;

private:
  /// The display, what is held and lent on it, and the thread that takes back.
  class Player;
  std::unique_ptr<Player> player_;
};

} // namespace tabwright::platform
