#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

struct xcb_connection_t;

namespace tabwright::platform {

/// Frees what the protocol library has allocated: replies, errors, events.
struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

/// A connection to an X11 display, closed with this object.
class X11Display {
public:
  /// Connects to the display of that name (":0"; empty: the one that DISPLAY names now). Throws DesktopFailure:
  /// `wayland` where there is only that, else `noWindowSystem`.
  explicit X11Display(const std::string& name);

  [[nodiscard]] xcb_connection_t* connection() const noexcept { return connection_.get(); }
  [[nodiscard]] int screen() const noexcept { return screen_; }
  [[nodiscard]] std::uint32_t root() const noexcept { return root_; }
  /// True when the display has gone; it doesn't come back to this connection.
  [[nodiscard]] bool isLost() const;

  /// The atom of a name; 0 when the display is lost.
  [[nodiscard]] std::uint32_t atom(std::string_view name) const;
  /// A property of the root window that is a text; empty when there is none.
  [[nodiscard]] std::string rootText(std::string_view property) const;
  /// A property of the root window that is a window; 0 when there is none.
  [[nodiscard]] std::uint32_t rootWindow(std::string_view property) const;

private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const;
  };
  int screen_ = 0;
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  std::uint32_t root_ = 0;
};

} // namespace tabwright::platform
