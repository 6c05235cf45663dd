// The core keyboard is meant throughout, the one that all keyboards of a display act together as, since windows get its
// keys. Strokes go out by XTEST; the layout comes from the X Keyboard Extension, and is read anew only after an event
// has told of a change. Requests stay in the connection's buffer until a question is put behind them: its answer says
// that the display has worked them off.
#include "platform/linux/KeyboardDisplay.h"

#include "platform/DesktopFault.h"
#include "platform/linux/XkbProtocol.h"

#include <cstdlib>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace tabwright::platform {

namespace {

constexpr xcb_xkb_device_spec_t coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

/// On a Wayland session's X11 display no window is active while the user is in a window that isn't X11's.
void requireActiveWindow(const X11Display& display) {
  const char* wayland = std::getenv("WAYLAND_DISPLAY");
  if (wayland != nullptr && *wayland != '\0' && display.rootWindow("_NET_ACTIVE_WINDOW") == XCB_WINDOW_NONE)
    throw failure(DesktopFault::wayland);
}

} // namespace

void KeyboardDisplay::Release::operator()(xkb_context* context) const {
  xkb_context_unref(context);
}

KeyboardDisplay::KeyboardDisplay(const std::string& display)
    : display_(display), context_(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES)) {
  xcb_connection_t* xcb = display_.connection();
  const xcb_query_extension_reply_t* test = xcb_get_extension_data(xcb, &xcb_test_id);
  if (test == nullptr || test->present == 0)
    throw failure(DesktopFault::noKeyPresses, "it lacks the extension XTEST");
  if (xkb_x11_setup_xkb_extension(xcb, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                  XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &keyboardEvent_,
                                  nullptr) == 0 ||
      !context_)
    throw failure(DesktopFault::noKeyPresses, "it lacks the extension XKEYBOARD");
  constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  constexpr std::uint16_t parts =
      XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
  xcb_xkb_select_events(xcb, coreKeyboard, events, 0, events, parts, parts, nullptr);
  refresh();
}

KeyboardDisplay::~KeyboardDisplay() = default;

KeyboardDisplay::State KeyboardDisplay::state() const {
  xcb_connection_t* xcb = display_.connection();
  requireActiveWindow(display_);
  // Both questions leave together.
  const auto stateCookie = xcb_xkb_get_state(xcb, coreKeyboard);
  const auto keysCookie = xcb_query_keymap(xcb);
  const ReplyPointer<xcb_xkb_get_state_reply_t> told(xcb_xkb_get_state_reply(xcb, stateCookie, nullptr));
  const ReplyPointer<xcb_query_keymap_reply_t> keys(xcb_query_keymap_reply(xcb, keysCookie, nullptr));
  if (!told || !keys)
    throw failure(DesktopFault::noWindowSystem, "the display was lost");
  State state;
  state.group = told->group;
  state.lockedGroup = told->lockedGroup;
  state.lockedModifiers = told->lockedMods;
  for (unsigned keycode = 0; keycode < 256; ++keycode) {
    if ((keys->keys[keycode / 8] >> keycode % 8 & 1) != 0)
      state.pressed.push_back(static_cast<std::uint8_t>(keycode));
  }
  return state;
}

void KeyboardDisplay::refresh() {
  xcb_connection_t* xcb = display_.connection();
  bool isCurrent = layout_ != nullptr;
  // All events are taken, so that none pile up; those of the extension tell of a new keyboard or a new map.
  while (const ReplyPointer<xcb_generic_event_t> event{xcb_poll_for_event(xcb)})
    isCurrent = isCurrent && (event->response_type & 0x7F) != keyboardEvent_;
  if (isCurrent)
    return;
  const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
      xkb_x11_keymap_new_from_device(context_.get(), xcb, xkb_x11_get_core_keyboard_device_id(xcb),
                                     XKB_KEYMAP_COMPILE_NO_FLAGS),
      &xkb_keymap_unref);
  if (!keymap)
    throw failure(DesktopFault::noKeyPresses, "its layout can’t be read");
  layout_ = std::make_unique<KeyboardLayout>(keymap.get());
}

void KeyboardDisplay::strike(std::uint8_t keycode, Stroke stroke) {
  xcb_test_fake_input(display_.connection(), stroke == Stroke::down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keycode,
                      XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

// Locked rather than latched: a latch would end with the next key.
void KeyboardDisplay::lockGroup(std::uint8_t group) {
  xcb_xkb_latch_lock_state(display_.connection(), coreKeyboard, 0, 0, 1, group, 0, 0, 0);
}

void KeyboardDisplay::lockModifiers(std::uint8_t affected, std::uint8_t locked) {
  xcb_xkb_latch_lock_state(display_.connection(), coreKeyboard, affected, locked, 0, 0, 0, 0, 0);
}

void KeyboardDisplay::map(std::uint8_t keycode, std::uint32_t symbol) {
  const xcb_keysym_t symbols[]{symbol, symbol}; // two, lest the second be made from the first by changing its case
  xcb_change_keyboard_mapping(display_.connection(), 1, keycode, 2, symbols);
}

void KeyboardDisplay::send() {
  xcb_connection_t* xcb = display_.connection();
  const ReplyPointer<xcb_get_input_focus_reply_t> worked(
      xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
  if (!worked)
    throw failure(DesktopFault::noWindowSystem, "the display was lost");
}

} // namespace tabwright::platform
