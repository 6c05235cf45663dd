#pragma once

#include "platform/Keyboard.h"
#include "platform/Mutex.h"
#include "scripting/driver/BrowserDriver.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::scripting {

/// The keyboard, which pages get their keys from over their browser's own protocol: they see each key with its right
/// name and place then, whatever the layout, and characters that no key gives arrive at once.
///
/// A key goes to the page of the frontmost application's front tab where that is a browser that can be reached, and the
/// page has the keyboard in it. All else goes to the keyboard of the display: keys for other applications, for the
/// browser's own address bar and dialogs, and those that browsers act on themselves (with control or alt held, Escape,
/// F1 to F12). The front tab's page of a browser that runs headless gets them all.
///
///     PageKeyboard keyboard(display, [&] { return frontBrowser(); });
///     keyboard.type("Grüße, 世界", {}, limits);
///
/// Throws as Keyboard does, and DriverFailure: `stopped` and `timedOut`, and from a headless browser any fault, since
/// no display could take its keys. Safe to use from several threads.
class PageKeyboard final : public platform::Keyboard {
public:
  /// The browser that is in front.
  struct FrontBrowser {
    /// Not null.
    std::shared_ptr<BrowserDriver> driver;
    bool hasWindows = false; ///< on some display; else the page is the only one to take keys
  };

  /// `display` outlives this. `front` yields nothing when another application is in front.
  PageKeyboard(platform::Keyboard& display, std::function<std::optional<FrontBrowser>()> front)
      : display_(display), front_(std::move(front)) {}

  void press(const platform::Key& key, const platform::KeyModifiers& modifiers,
             const platform::CallLimits& limits) override;
  void type(const std::string& text, const platform::KeyModifiers& modifiers,
            const platform::CallLimits& limits) override;
  void hold(const platform::KeyModifiers& modifiers) override;
  void release(const platform::KeyModifiers& modifiers) override;

private:
  /// Where keys go. `tab` is the one whose page has the keyboard; nothing when it is no page.
  struct Aim {
    std::optional<FrontBrowser> front;
    std::optional<TabID> tab;
    std::chrono::steady_clock::time_point taken;
  };

  /// The aim of a key; the same for 50 ms, unless a key of the display comes between.
  Aim aim(const platform::CallLimits& limits);
  /// The tab in front, if its page has the keyboard. Nothing for a browser with windows that can't be asked.
  [[nodiscard]] static std::optional<TabID> focusedTab(const FrontBrowser& front, const platform::CallLimits& limits);
  /// Plays the keys to the page that is aimed at. False, and nothing was played, where they are the display's.
  bool play(const Aim& aim, std::vector<PageKey> keys, const platform::KeyModifiers& modifiers,
            const platform::CallLimits& limits);
  /// The display's keyboard, for keys that may change what has the keyboard.
  platform::Keyboard& display();

  platform::Keyboard& display_;
  const std::function<std::optional<FrontBrowser>()> front_;
  platform::Mutex mutex_;
  platform::KeyModifiers held_ GUARDED_BY(mutex_);
  platform::KeyModifiers heldOnDisplay_ GUARDED_BY(mutex_);
  std::optional<Aim> aim_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
