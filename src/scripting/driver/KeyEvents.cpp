// All events go out at once, in their order, and are awaited together: the browser takes them up one after the other.
#include "scripting/driver/KeyEvents.h"

#include <boost/json/object.hpp>

#include <memory>
#include <vector>

namespace tabwright::scripting {

using devtools::Session;

namespace {

// Bits of Input.dispatchKeyEvent; "meta" is the key with the window symbol.
constexpr int altBit = 1, controlBit = 2, metaBit = 4, shiftBit = 8;
constexpr int keypadLocation = 3; // KeyboardEvent.DOM_KEY_LOCATION_NUMPAD

int bitsOf(const platform::KeyModifiers& modifiers, const PageKey& key) {
  return (modifiers.alt ? altBit : 0) | (modifiers.control ? controlBit : 0) | (modifiers.super ? metaBit : 0) |
         (modifiers.shift || key.isShifted ? shiftBit : 0);
}

boost::json::object eventOf(const char* type, const PageKey& key, int modifiers) {
  boost::json::object event{{"type", type},
                            {"key", key.key},
                            {"code", key.code},
                            {"modifiers", modifiers},
                            {"windowsVirtualKeyCode", key.keyCode},
                            {"nativeVirtualKeyCode", key.keyCode}};
  if (key.isOnKeypad) {
    event["isKeypad"] = true;
    event["location"] = keypadLocation;
  }
  return event;
}

} // namespace

bool playKeys(Session& page, const PlayKeys& command, const platform::CallLimits& limits) {
  if (!command.hasKeyboard && page.evaluate("document.hasFocus()", limits).value != boost::json::value(true))
    return false;
  std::vector<std::shared_ptr<devtools::PendingCall>> calls;
  const auto send = [&](const char* method, boost::json::object parameters) {
    calls.push_back(page.send(method, std::move(parameters), Session::AnsweredBy::page));
  };
  for (const PageKey& key : command.keys) {
    if (key.key.empty()) {
      // Enters the text as an input method does: the page sees no key.
      send("Input.insertText", {{"text", key.text}});
      continue;
    }
    const int modifiers = bitsOf(command.modifiers, key);
    // With these a key is a shortcut, and enters no text.
    const bool isShortcut = (modifiers & (altBit | controlBit | metaBit)) != 0;
    const bool entersText = !key.text.empty() && !isShortcut;
    boost::json::object down = eventOf(entersText ? "keyDown" : "rawKeyDown", key, modifiers);
    if (entersText) {
      down["text"] = key.text;
      down["unmodifiedText"] = key.text;
    }
    send("Input.dispatchKeyEvent", std::move(down));
    send("Input.dispatchKeyEvent", eventOf("keyUp", key, modifiers));
  }
  for (const auto& call : calls)
    call->result(limits);
  return true;
}

} // namespace tabwright::scripting
