#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

struct xcb_connection_t;

namespace tabwright::platform {

/// Frees what the protocol library has allocated: replies, errors, events.
///
///     const ReplyPointer<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(xcb, cookie, nullptr));
///     if (!tree)
///       return; // an error, or the display was lost
struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

/// A connection to an X11 display, closed with this object. The protocol library may be used by several threads at
/// once; who waits for the answer to a question of this class blocks.
class X11Display {
public:
  /// Connects to the display of that name (":0"; empty: the one that DISPLAY names now). Throws DesktopFailure:
  /// `wayland` where there is only that, else `noWindowSystem`.
  explicit X11Display(const std::string& name);

  /// For requests of one's own; never null, and this object's to close.
  [[nodiscard]] xcb_connection_t* connection() const noexcept { return connection_.get(); }
  /// The number of the screen that the display's name chose, 0 mostly.
  [[nodiscard]] int screen() const noexcept { return screen_; }
  /// The root window of that screen.
  [[nodiscard]] std::uint32_t root() const noexcept { return root_; }
  /// True when the display has gone; it doesn't come back to this connection.
  [[nodiscard]] bool isLost() const;

  /// The atom of a name; 0 when the display is lost. Made by the server when there is none yet. One round trip.
  [[nodiscard]] std::uint32_t atom(std::string_view name) const;
  /// A property of the root window that is a text; empty when there is none. Cut to 4,096 bytes.
  [[nodiscard]] std::string rootText(std::string_view property) const;
  /// A property of the root window that is a window; 0 when there is none. Window managers keep facts about all windows
  /// there. The window may be gone by then.
  [[nodiscard]] std::uint32_t rootWindow(std::string_view property) const;

private:
  /// Also what a failed connection needs, which the library returns as an object all the same.
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const;
  };
  int screen_ = 0;
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  std::uint32_t root_ = 0;
};

} // namespace tabwright::platform
