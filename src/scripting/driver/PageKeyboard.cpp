#include "scripting/driver/PageKeyboard.h"

#include "platform/DesktopFault.h"
#include "platform/Logger.h"

#include <utility>

namespace tabwright::scripting {

using platform::KeyModifiers;

namespace {

const platform::Logger log("PageKeyboard");

constexpr std::uint32_t escape = 0xff1b, f1 = 0xffbe, f12 = 0xffc9;

bool isOfBrowser(const platform::Key& key) {
  return key.symbol == escape || (key.symbol >= f1 && key.symbol <= f12);
}

/// Shift alone makes other characters, and is the page's matter; the others make shortcuts.
bool makesShortcut(const KeyModifiers& modifiers) {
  return modifiers.control || modifiers.alt || modifiers.super;
}

} // namespace

void PageKeyboard::press(const platform::Key& key, const KeyModifiers& modifiers, const platform::CallLimits& limits) {
  const std::optional<FrontBrowser> front = front_();
  const bool isForDisplay = front && front->hasWindows && (makesShortcut(modifiers) || isOfBrowser(key));
  std::optional<PageKey> pageKey = front && !isForDisplay ? pageKeyOf(key) : std::nullopt;
  if (!pageKey || !play(front, {std::move(*pageKey)}, modifiers, limits))
    display_.press(key, modifiers, limits);
}

void PageKeyboard::type(const std::string& text, const KeyModifiers& modifiers, const platform::CallLimits& limits) {
  const std::optional<FrontBrowser> front = front_();
  // With shift held the display's keys know which character comes of it.
  const bool isForDisplay = front && front->hasWindows && (makesShortcut(modifiers) || modifiers.shift);
  std::optional<std::vector<PageKey>> keys = front && !isForDisplay ? pageKeysOf(text) : std::nullopt;
  if (!keys || !play(front, std::move(*keys), modifiers, limits))
    display_.type(text, modifiers, limits);
}

bool PageKeyboard::play(const std::optional<FrontBrowser>& front, std::vector<PageKey> keys,
                        const KeyModifiers& modifiers, const platform::CallLimits& limits) {
  {
    const platform::MutexLock lock(mutex_);
    if (held_ != KeyModifiers{} && front->hasWindows)
      return false;
  }
  try {
    const std::shared_ptr<const BrowserSnapshot> seen = front->driver->snapshot(limits);
    if (seen->windows.empty() || seen->windows.front().activeTabIndex == 0)
      return false;
    const WindowState& window = seen->windows.front();
    return front->driver->perform(PlayKeys{.tab = window.tabs.at(window.activeTabIndex - 1).id,
                                           .keys = std::move(keys),
                                           .modifiers = modifiers,
                                           .hasKeyboard = !front->hasWindows},
                                  limits) != 0;
  } catch (const DriverFailure& failure) {
    if (!front->hasWindows || failure.kind() == DriverFault::stopped || failure.kind() == DriverFault::timedOut)
      throw;
    log.debug("The page gets its keys from the display: {}", failure.errorDescription());
    return false;
  }
}

// Modifiers that are held say that shortcuts follow, which are the display's.

void PageKeyboard::hold(const KeyModifiers& modifiers) {
  {
    const platform::MutexLock lock(mutex_);
    held_ = {.shift = held_.shift || modifiers.shift,
             .control = held_.control || modifiers.control,
             .alt = held_.alt || modifiers.alt,
             .super = held_.super || modifiers.super};
  }
  display_.hold(modifiers);
}

void PageKeyboard::release(const KeyModifiers& modifiers) {
  {
    const platform::MutexLock lock(mutex_);
    held_ = {.shift = held_.shift && !modifiers.shift,
             .control = held_.control && !modifiers.control,
             .alt = held_.alt && !modifiers.alt,
             .super = held_.super && !modifiers.super};
  }
  const std::optional<FrontBrowser> front = front_();
  if (!front || front->hasWindows)
    display_.release(modifiers);
}

} // namespace tabwright::scripting
