// A key is aimed first: at the tab whose page has the keyboard, found by one look and one question, and kept for a
// moment. Keys that browsers act on themselves, and all that can't be played to the page, go to the display. A key of
// the display may move the focus, so each of them drops the aim.
#include "scripting/driver/PageKeyboard.h"

#include "platform/Logger.h"

#include <utility>

namespace tabwright::scripting {

using platform::KeyModifiers;

namespace {

const platform::Logger keyboardLog("PageKeyboard");

constexpr std::uint32_t escape = 0xff1b, f1 = 0xffbe, f12 = 0xffc9;

/// Keys that browsers act on without any modifier.
bool isOfBrowser(const platform::Key& key) {
  return key.symbol == escape || (key.symbol >= f1 && key.symbol <= f12);
}

// For as long an aim holds.
constexpr std::chrono::milliseconds validity{50};

/// Shift alone makes other characters, and is the page's matter; the others make shortcuts.
bool makesShortcut(const KeyModifiers& modifiers) {
  return modifiers.control || modifiers.alt || modifiers.super;
}

KeyModifiers joined(const KeyModifiers& some, const KeyModifiers& others) {
  return {.shift = some.shift || others.shift,
          .control = some.control || others.control,
          .alt = some.alt || others.alt,
          .super = some.super || others.super};
}

KeyModifiers without(const KeyModifiers& some, const KeyModifiers& others) {
  return {.shift = some.shift && !others.shift,
          .control = some.control && !others.control,
          .alt = some.alt && !others.alt,
          .super = some.super && !others.super};
}

} // namespace

void PageKeyboard::press(const platform::Key& key, const KeyModifiers& modifiers, const platform::CallLimits& limits) {
  const Aim where = aim(limits);
  const bool isForDisplay = where.front && where.front->hasWindows && (makesShortcut(modifiers) || isOfBrowser(key));
  std::optional<PageKey> pageKey = isForDisplay ? std::nullopt : pageKeyOf(key);
  if (!pageKey || !play(where, {std::move(*pageKey)}, modifiers, limits))
    display().press(key, modifiers, limits);
}

void PageKeyboard::type(const std::string& text, const KeyModifiers& modifiers, const platform::CallLimits& limits) {
  const Aim where = aim(limits);
  // With shift held the display's keys know which character comes of it.
  const bool isForDisplay = where.front && where.front->hasWindows && (makesShortcut(modifiers) || modifiers.shift);
  std::optional<std::vector<PageKey>> keys = isForDisplay ? std::nullopt : pageKeysOf(text);
  if (!keys || !play(where, std::move(*keys), modifiers, limits))
    display().type(text, modifiers, limits);
}

/// The answer is kept for a moment: programs type character by character, and to look anew for each would take several
/// times longer than the key.
PageKeyboard::Aim PageKeyboard::aim(const platform::CallLimits& limits) {
  const auto now = limits.now();
  {
    const platform::MutexLock lock(mutex_);
    if (aim_ && now - aim_->taken < validity)
      return *aim_;
  }
  Aim aim{.front = front_(), .tab = {}, .taken = now};
  if (aim.front)
    aim.tab = focusedTab(*aim.front, limits);
  const platform::MutexLock lock(mutex_);
  aim_ = aim;
  return aim;
}

std::optional<TabID> PageKeyboard::focusedTab(const FrontBrowser& front, const platform::CallLimits& limits) {
  try {
    const std::shared_ptr<const BrowserSnapshot> seen = front.driver->snapshot(limits);
    if (seen->windows.empty() || seen->windows.front().activeTabIndex == 0)
      return std::nullopt;
    const WindowState& window = seen->windows.front();
    const TabID tab = window.tabs.at(window.activeTabIndex - 1).id;
    const PlayKeys question{.tab = tab, .keys = {}, .modifiers = {}, .hasKeyboard = !front.hasWindows};
    return front.driver->perform(question, limits) != 0 ? std::optional(tab) : std::nullopt;
  } catch (const DriverFailure& failure) {
    // The display's keys reach a browser with windows whatever state it is in. One without has no other way to them.
    if (!front.hasWindows || failure.kind() == DriverFault::stopped || failure.kind() == DriverFault::timedOut)
      throw;
    keyboardLog.debug("Keys go to the display: {}", failure.errorDescription());
    return std::nullopt;
  }
}

bool PageKeyboard::play(const Aim& aim, std::vector<PageKey> keys, const KeyModifiers& modifiers,
                        const platform::CallLimits& limits) {
  if (!aim.tab)
    return false;
  KeyModifiers all = modifiers;
  {
    const platform::MutexLock lock(mutex_);
    // Only the display knows of the modifiers that it holds.
    if (held_ != KeyModifiers{} && aim.front->hasWindows)
      return false;
    all = joined(all, held_);
  }
  // `aim` has asked already whether the page has the keyboard.
  return aim.front->driver->perform(
             PlayKeys{.tab = *aim.tab, .keys = std::move(keys), .modifiers = all, .hasKeyboard = true}, limits) != 0;
}

platform::Keyboard& PageKeyboard::display() {
  const platform::MutexLock lock(mutex_);
  aim_.reset();
  return display_;
}

// Modifiers that are held say that shortcuts follow, which are the display's; those for a browser without windows are
// only remembered for the keys that follow.

void PageKeyboard::hold(const KeyModifiers& modifiers) {
  const std::optional<FrontBrowser> front = front_();
  const bool isForDisplay = !front || front->hasWindows;
  if (isForDisplay)
    display().hold(modifiers);
  const platform::MutexLock lock(mutex_);
  held_ = joined(held_, modifiers);
  if (isForDisplay)
    heldOnDisplay_ = joined(heldOnDisplay_, modifiers);
}

void PageKeyboard::release(const KeyModifiers& modifiers) {
  const std::optional<FrontBrowser> front = front_();
  KeyModifiers ours;
  {
    const platform::MutexLock lock(mutex_);
    held_ = without(held_, modifiers);
    ours = without(heldOnDisplay_, without(heldOnDisplay_, modifiers));
    heldOnDisplay_ = without(heldOnDisplay_, modifiers);
  }
  // Before a display, others may have pressed them. Another browser may be in front by now than the one of the hold.
  if (!front || front->hasWindows)
    display_.release(modifiers);
  else if (ours != KeyModifiers{})
    display_.release(ours);
}

} // namespace tabwright::scripting
