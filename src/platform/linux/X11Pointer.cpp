#include "platform/linux/X11Pointer.h"

#include "platform/DesktopFault.h"
#include "platform/linux/X11Display.h"

#include <cstdint>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace tabwright::platform {

void X11Pointer::click(int x, int y) {
  const X11Display display(display_);
  xcb_connection_t* xcb = display.connection();
  const xcb_query_extension_reply_t* test = xcb_get_extension_data(xcb, &xcb_test_id);
  if (test == nullptr || test->present == 0)
    throw failure(DesktopFault::noKeyPresses, "it lacks the extension XTEST");
  const auto fake = [&](std::uint8_t event, std::uint8_t detail, int toX, int toY) {
    xcb_test_fake_input(xcb, event, detail, XCB_CURRENT_TIME, display.root(), static_cast<std::int16_t>(toX),
                        static_cast<std::int16_t>(toY), 0);
  };
  fake(XCB_MOTION_NOTIFY, 0, x, y);
  fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1, 0, 0);
  fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1, 0, 0);
  // An answer to anything says that the display has worked all of it off.
  const ReplyPointer<xcb_get_input_focus_reply_t> done(
      xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
  if (!done)
    throw failure(DesktopFault::noWindowSystem, "the display was lost");
}

} // namespace tabwright::platform
