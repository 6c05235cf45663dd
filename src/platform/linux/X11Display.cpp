// The environment is looked at first, since the protocol library tells only that it can't connect: without DISPLAY
// there is no X11, and whether there is Wayland instead decides what a user is told. Questions here are about single
// facts; each waits for its answer.
#include "platform/linux/X11Display.h"

#include "platform/DesktopFault.h"

#include <fmt/core.h>

#include <xcb/xcb.h>

namespace tabwright::platform {

namespace {

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

} // namespace

void X11Display::Disconnect::operator()(xcb_connection_t* connection) const {
  xcb_disconnect(connection);
}

X11Display::X11Display(const std::string& name) {
  if (name.empty() && !isSet("DISPLAY")) {
    if (isSet("WAYLAND_DISPLAY"))
      throw failure(DesktopFault::wayland);
    throw failure(DesktopFault::noWindowSystem, "DISPLAY isn’t set");
  }
  const char* const variable = std::getenv("DISPLAY");
  // Named in full, since the sentence of a failure tells it.
  const std::string display = name.empty() && variable ? variable : name;
  connection_.reset(xcb_connect(display.c_str(), &screen_));
  if (isLost())
    throw failure(DesktopFault::noWindowSystem, fmt::format("the display {} can’t be reached", display));
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection()));
  // The library gives the screens as a list, and the chosen one as a number.
  for (int number = 0; number < screen_ && screens.rem > 1; ++number)
    xcb_screen_next(&screens);
  root_ = screens.data->root;
}

bool X11Display::isLost() const {
  return xcb_connection_has_error(connection()) != 0;
}

std::uint32_t X11Display::atom(std::string_view name) const {
  const ReplyPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection(), xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

namespace {

ReplyPointer<xcb_get_property_reply_t> rootProperty(const X11Display& display, std::string_view name) {
  xcb_connection_t* xcb = display.connection();
  return ReplyPointer<xcb_get_property_reply_t>(xcb_get_property_reply(
      xcb, xcb_get_property(xcb, 0, display.root(), display.atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1024), nullptr));
}

} // namespace

std::string X11Display::rootText(std::string_view property) const {
  const auto reply = rootProperty(*this, property);
  if (!reply || reply->format != 8)
    return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::uint32_t X11Display::rootWindow(std::string_view property) const {
  const auto reply = rootProperty(*this, property);
  if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) == 0)
    return XCB_WINDOW_NONE;
  return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
}

} // namespace tabwright::platform
