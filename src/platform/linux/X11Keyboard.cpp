// A text goes out in parcels of some characters. Each begins and ends with the keyboard as the user left it, but for
// modifiers that the user held, and leaves in one piece: so whatever happens between two parcels leaves nothing
// pressed. For each parcel the keyboard's state is asked anew, since the user may have changed the layout.
// Programs learn of a key's new symbol by a message that they may read late; hence the waits around each change.
#include "platform/linux/X11Keyboard.h"

#include "platform/DesktopFault.h"
#include "platform/Mutex.h"
#include "platform/Sleep.h"
#include "platform/linux/KeyboardDisplay.h"
#include "platform/linux/KeyboardLayout.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <optional>
#include <span>
#include <thread>
#include <utility>
#include <vector>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace tabwright::platform {

namespace {

using std::chrono::steady_clock;
using Stroke = KeyboardDisplay::Stroke;

constexpr std::size_t parcel = 64;      ///< characters whose strokes fit into the connection's buffer
constexpr std::size_t foresight = 1024; ///< characters that are looked at when spare keys are given out
/// Programs have heard of a key's new symbol by then, both processors busy too.
constexpr std::chrono::milliseconds settling{50};
/// A busy program takes in a key in this time, and only then may the key be given another symbol.
constexpr std::chrono::milliseconds digestion{200}, digestionOfEach{1};
/// Keys that were lent to characters are taken back when programs have had nothing to work off for this long.
constexpr std::chrono::milliseconds idleness{500};

constexpr std::uint8_t shiftModifier = 1 << 0, capsLock = 1 << 1, controlModifier = 1 << 2;

void requireTime(const CallLimits& limits) {
  if (limits.stop.stop_requested() || limits.hasPassed())
    throw failure(DesktopFault::stopped);
}

} // namespace

class X11Keyboard::Player {
public:
  explicit Player(std::string display) : name_(std::move(display)) {}
  ~Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  void press(const Key& key, const KeyModifiers& modifiers);
  void type(std::u32string_view text, const KeyModifiers& modifiers, const CallLimits& limits);
  void hold(const KeyModifiers& modifiers);
  void release(const KeyModifiers& modifiers);

private:
  /// A spare key and the character that it stands for meanwhile.
  struct Lent {
    std::uint8_t keycode;
    char32_t character;
  };

  /// Connects if need be. The layout is up to date then, and stays as it is until the next call.
  KeyboardDisplay& display() REQUIRES(turn_);
  std::uint8_t maskOf(const KeyModifiers& modifiers) REQUIRES(turn_);
  void strikeModifiers(std::uint8_t modifiers, Stroke stroke) REQUIRES(turn_);
  void play(std::span<const KeyPlace> places, std::uint8_t modifiers) REQUIRES(turn_);
  std::vector<KeyPlace> placesOf(std::u32string_view text) REQUIRES(turn_);
  void lendFor(std::u32string_view text, const CallLimits& limits) REQUIRES(turn_);
  void takeBackWhenIdle(const std::stop_token& stop);
  void takeBack() REQUIRES(turn_);

  const std::string name_;
  Mutex turn_;
  std::unique_ptr<KeyboardDisplay> display_ GUARDED_BY(turn_);
  std::uint8_t held_ GUARDED_BY(turn_) = 0; ///< modifiers that are to stay pressed
  std::vector<Lent> lent_ GUARDED_BY(turn_);
  steady_clock::time_point takenIn_ GUARDED_BY(turn_); ///< when programs will have worked off all that was played
  std::condition_variable_any lentSome_;
  std::jthread keeper_; ///< takes back; runs once something was lent
};

KeyboardDisplay& X11Keyboard::Player::display() {
  if (!display_ || display_->isLost()) {
    display_.reset();
    held_ = 0;
    lent_.clear();
    display_ = std::make_unique<KeyboardDisplay>(name_);
  }
  display_->refresh();
  return *display_;
}

std::uint8_t X11Keyboard::Player::maskOf(const KeyModifiers& modifiers) {
  const KeyboardLayout& layout = display().layout();
  std::uint8_t mask = 0;
  const auto add = [&](bool isWanted, std::uint8_t modifier, xkb_keysym_t symbol, const char* name) {
    if (!isWanted)
      return;
    // Alt and Super are no real modifiers of X11: the layout says which of those their keys set.
    if (const auto place = layout.findSymbol(symbol, 0); modifier == 0 && place)
      modifier = layout.modifiersOf(place->keycode);
    if (modifier == 0 || !layout.modifierKey(modifier))
      throw failure(DesktopFault::noSuchKey, name);
    mask |= modifier;
  };
  add(modifiers.shift, shiftModifier, XKB_KEY_Shift_L, "Shift");
  add(modifiers.control, controlModifier, XKB_KEY_Control_L, "Control");
  add(modifiers.alt, 0, XKB_KEY_Alt_L, "Alt");
  add(modifiers.super, 0, XKB_KEY_Super_L, "Super");
  return mask;
}

void X11Keyboard::Player::strikeModifiers(std::uint8_t modifiers, Stroke stroke) {
  for (unsigned bit = 0; bit < 8; ++bit) {
    const auto modifier = static_cast<std::uint8_t>(modifiers & 1u << bit);
    if (const auto key = modifier != 0 ? display_->layout().modifierKey(modifier) : std::nullopt)
      display_->strike(*key, stroke);
  }
}

/// Plays the keys of one parcel while modifiers are held.
void X11Keyboard::Player::play(std::span<const KeyPlace> places, std::uint8_t modifiers) {
  const KeyboardLayout& layout = display_->layout();
  const KeyboardDisplay::State before = display_->state();
  for (const std::uint8_t keycode : before.pressed) {
    // The user's Shift would turn what is played into something else.
    if (const std::uint8_t set = layout.modifiersOf(keycode); (set & ~held_) != 0)
      display_->strike(keycode, Stroke::up);
  }
  const auto locks = static_cast<std::uint8_t>(capsLock | layout.numLock());
  const auto lockedBefore = static_cast<std::uint8_t>(before.lockedModifiers & locks);
  std::uint8_t locked = lockedBefore;
  const auto setLocks = [&](std::uint8_t wanted) REQUIRES(turn_) {
    if (wanted != locked)
      display_->lockModifiers(locks, wanted);
    locked = wanted;
  };
  setLocks(static_cast<std::uint8_t>(locked & ~capsLock));
  std::uint8_t group = before.group, pressed = held_;
  const auto setPressed = [&](std::uint8_t wanted) REQUIRES(turn_) {
    strikeModifiers(static_cast<std::uint8_t>(pressed & ~wanted), Stroke::up);
    strikeModifiers(static_cast<std::uint8_t>(wanted & ~pressed), Stroke::down);
    pressed = wanted;
  };
  for (const KeyPlace& place : places) {
    // Locked once for all characters of this group in a row.
    if (place.group.value_or(group) != group)
      display_->lockGroup(group = *place.group);
    if (place.numLock == KeyPlace::NumLock::on)
      setLocks(static_cast<std::uint8_t>(locked | layout.numLock()));
    else if (place.numLock == KeyPlace::NumLock::off)
      setLocks(static_cast<std::uint8_t>(locked & ~layout.numLock()));
    setPressed(static_cast<std::uint8_t>(held_ | modifiers | place.modifiers));
    display_->strike(place.keycode, Stroke::down);
    display_->strike(place.keycode, Stroke::up);
  }
  setPressed(held_);
  // The locked group, as the effective one may have another part that the user holds.
  if (group != before.group)
    display_->lockGroup(before.lockedGroup);
  setLocks(lockedBefore);
  display_->send();
  // Programs work one parcel off after the other, so their times add up.
  takenIn_ = std::max(takenIn_, steady_clock::now()) + places.size() * digestionOfEach;
}

void X11Keyboard::Player::press(const Key& key, const KeyModifiers& modifiers) {
  const MutexLock lock(turn_);
  const std::uint8_t mask = maskOf(modifiers);
  const KeyboardLayout& layout = display_->layout();
  // By its symbol first: keys that users name by what they do lie elsewhere in other layouts.
  std::optional<KeyPlace> place = layout.findSymbol(key.symbol, display_->state().group);
  constexpr unsigned kernelOffset = 8;
  if (!place && key.position != 0 && layout.hasKey(key.position + kernelOffset)) {
    place.emplace();
    place->keycode = static_cast<std::uint8_t>(key.position + kernelOffset);
  }
  if (!place) {
    std::array<char, 64> name{};
    xkb_keysym_get_name(key.symbol, name.data(), name.size());
    throw failure(DesktopFault::noSuchKey, name.data());
  }
  play({&*place, 1}, mask);
}

void X11Keyboard::Player::type(std::u32string_view text, const KeyModifiers& modifiers, const CallLimits& limits) {
  const MutexLock lock(turn_);
  const std::uint8_t mask = maskOf(modifiers);
  while (!text.empty()) {
    requireTime(limits);
    const std::u32string_view next = text.substr(0, parcel);
    std::vector<KeyPlace> places = placesOf(next);
    // Further ahead than this parcel, so that keys are given out once for many characters.
    if (places.size() < next.size()) {
      lendFor(text.substr(0, foresight), limits);
      places = placesOf(next);
    }
    if (places.empty())
      throw failure(DesktopFault::noKeyPresses, "its keyboard has no spare key for characters of other layouts");
    play(places, mask);
    text.remove_prefix(places.size());
  }
}

/// The keys for the characters at the beginning of a text, up to the first that has none.
std::vector<KeyPlace> X11Keyboard::Player::placesOf(std::u32string_view text) {
  const KeyboardLayout& layout = display().layout();
  const std::uint8_t group = display_->state().group;
  std::vector<KeyPlace> places;
  for (const char32_t character : text) {
    const auto place = layout.findCharacter(character, group);
    if (!place)
      break;
    places.push_back(*place);
  }
  return places;
}

/// Puts characters that no key gives on spare keys, from the beginning of a text as far as the keys suffice; where none
/// are left, on those of characters that the text doesn't need.
void X11Keyboard::Player::lendFor(std::u32string_view text, const CallLimits& limits) {
  const KeyboardLayout& layout = display().layout();
  const auto isOnKey = [&](const Lent& lent) {
    const auto place = layout.findCharacter(lent.character, 0);
    return place && place->keycode == lent.keycode;
  };
  std::erase_if(lent_, [&](const Lent& lent) { return !isOnKey(lent); }); // the user has loaded another layout
  std::vector<std::uint8_t> keys = layout.spareKeys();
  const std::size_t room = keys.size() + lent_.size();
  std::u32string needed, missing;
  for (const char32_t character : text) {
    const bool isMissing = !layout.findCharacter(character, 0);
    const bool isLent = std::ranges::find(lent_, character, &Lent::character) != lent_.end();
    if ((!isMissing && !isLent) || needed.contains(character))
      continue;
    // The rest gets its turn with a later parcel.
    if (needed.size() == room)
      break;
    needed += character;
    if (isMissing)
      missing += character;
  }
  if (keys.size() < missing.size()) {
    // A key that a program hasn't taken in yet would give it the new character instead.
    sleepWithin(limits, takenIn_ + digestion - steady_clock::now());
    std::erase_if(lent_, [&](const Lent& lent) {
      const bool isNeeded = needed.contains(lent.character);
      if (!isNeeded)
        keys.push_back(lent.keycode);
      return !isNeeded;
    });
  }
  requireTime(limits);
  for (std::size_t each = 0; each < missing.size(); ++each) {
    display_->map(keys.at(each), *symbolOfCharacter(missing[each]));
    lent_.push_back({keys[each], missing[each]});
  }
  display_->send();
  if (!keeper_.joinable())
    keeper_ = std::jthread([this](const std::stop_token& stop) { takeBackWhenIdle(stop); });
  lentSome_.notify_all();
  sleepWithin(limits, settling);
  requireTime(limits);
}

void X11Keyboard::Player::takeBack() {
  for (const Lent& lent : std::exchange(lent_, {}))
    display_->map(lent.keycode, XKB_KEY_NoSymbol);
  display_->send();
}

void X11Keyboard::Player::takeBackWhenIdle(const std::stop_token& stop) {
  MutexLock lock(turn_);
  while (lentSome_.wait(lock, stop, [this]() REQUIRES(turn_) { return !lent_.empty(); })) {
    if (lentSome_.wait_until(lock, stop, takenIn_ + idleness, [] { return false; }) || stop.stop_requested())
      return;
    // More was played meanwhile.
    if (steady_clock::now() < takenIn_ + idleness)
      continue;
    try {
      takeBack();
    } catch (const DesktopFailure&) {
      lent_.clear(); // the display is gone, and the keys with it
    }
  }
}

void X11Keyboard::Player::hold(const KeyModifiers& modifiers) {
  const MutexLock lock(turn_);
  const std::uint8_t mask = maskOf(modifiers);
  strikeModifiers(static_cast<std::uint8_t>(mask & ~held_), Stroke::down);
  held_ |= mask;
  display_->send();
}

void X11Keyboard::Player::release(const KeyModifiers& modifiers) {
  const MutexLock lock(turn_);
  const std::uint8_t mask = maskOf(modifiers);
  const KeyboardDisplay::State state = display_->state();
  for (const std::uint8_t keycode : state.pressed) {
    if ((display_->layout().modifiersOf(keycode) & mask) != 0)
      display_->strike(keycode, Stroke::up);
  }
  held_ &= static_cast<std::uint8_t>(~mask);
  display_->send();
}

X11Keyboard::Player::~Player() {
  // First, without the lock that it takes.
  keeper_ = {};
  if (!display_)
    return;
  try {
    strikeModifiers(held_, Stroke::up);
    takeBack();
  } catch (const DesktopFailure&) {
    // The display is gone, and with it all that was pressed.
  }
}

X11Keyboard::X11Keyboard(std::string display) : player_(std::make_unique<Player>(std::move(display))) {}
X11Keyboard::~X11Keyboard() = default;

void X11Keyboard::press(const Key& key, const KeyModifiers& modifiers, const CallLimits& limits) {
  requireTime(limits);
  player_->press(key, modifiers);
}

void X11Keyboard::type(const std::string& text, const KeyModifiers& modifiers, const CallLimits& limits) {
  player_->type(typableCharacters(text), modifiers, limits);
}

void X11Keyboard::hold(const KeyModifiers& modifiers) {
  player_->hold(modifiers);
}

void X11Keyboard::release(const KeyModifiers& modifiers) {
  player_->release(modifiers);
}

} // namespace tabwright::platform
