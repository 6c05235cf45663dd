#pragma once

#include "relay/Frames.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The form in which messages of several clients share the one pipe to the helper in the browser.
///
///     helper to relay     {"client":N,"message":X}              X goes to client N, or to all for 0
///     relay to helper     {"client":N,"text":"…","more":B}      a piece of a message of client N, as JSON text
///                         {"client":N,"gone":true}              client N has left; its unfinished message is void
///
/// The relay reads nothing else of them, least of all X.
namespace tabwright::relay {

/// Numbers of clients, from 1 and never used twice.
using ClientNumber = std::uint64_t;
inline constexpr ClientNumber everyone = 0;

/// The client that an envelope goes to, and the place of its message in it: [begin, end), at least headSize bytes
/// behind the front.
struct Addressed {
  ClientNumber client = everyone;
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// Reads an envelope from the helper. It is written exactly as above, as JSON.stringify does it: no blanks, and the
/// number without leading zeros, below 2^53. Throws Malformed for anything else. The message isn't looked at, but it
/// isn't empty.
[[nodiscard]] Addressed readEnvelope(std::string_view content);

/// The frame, with its head, that tells the helper that a client has left.
[[nodiscard]] std::string goneFrame(ClientNumber client);

/// Turns the frames of one client into frames for the browser, of at most longestFrameForBrowser bytes each.
///
/// It keeps three bytes of a message at most, so that a message of any length passes through. No character and no
/// escape is cut in two: each piece is well-formed JSON by itself, whatever the client has sent.
class MessagePieces {
public:
  explicit MessagePieces(ClientNumber client);

  /// Takes the next bytes of the client's stream, and appends the frames that come of them, with their heads. An empty
  /// frame of the client's becomes one piece without text.
  ///
  /// Throws Malformed for a frame longer than longestFrame, and for one that isn't UTF-8. Pieces of it may have been
  /// appended by then, so the client must be told of as gone.
  void feed(std::string_view bytes, std::string& frames);

  /// True when a stream that ends here ends within a frame.
  [[nodiscard]] bool isWithinFrame() const noexcept { return isInContent_ || head_.hasBegun(); }

private:
  void feedContent(std::string_view text, bool isEnd, std::string& frames);
  void finishPiece(bool isMore, std::string& frames);

  const std::string opening_; // of each piece
  HeadReader head_;
  std::size_t missing_ = 0; // bytes of the frame's content
  bool isInContent_ = false;
  std::string cutCharacter_; // its first bytes
  std::string piece_;        // escaped
};

} // namespace tabwright::relay
