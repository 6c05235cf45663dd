// A message of a client's is turned into pieces as its bytes come in: each read of the socket becomes one piece, or as
// many as escapes make of it. What may be the beginning of a character waits for the next read.
#include "relay/Envelope.h"

#include "session/UTF8.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace tabwright::relay {
namespace {

constexpr std::string_view clientKey = R"({"client":)";
constexpr std::string_view messageKey = R"(,"message":)";
constexpr std::string_view textKey = R"(,"text":")";
constexpr std::string_view closingWithMore = R"(","more":true})";
constexpr std::string_view closingWithoutMore = R"(","more":false})";
// Beyond it JavaScript has no number for each integer.
constexpr ClientNumber numbersEnd = ClientNumber{1} << 53;
// No character takes more in UTF-8, and none of its beginnings as many.
constexpr std::size_t longestCharacter = 4;

Malformed noEnvelope() {
  return Malformed(R"(a message is not of the form {"client":N,"message":…})");
}

void appendFrame(std::string& frames, std::string_view content) {
  const auto head = frameHead(static_cast<std::uint32_t>(content.size()));
  frames.append(head.data(), head.size());
  frames += content;
}

/// The character as JSON text has it.
void appendEscaped(std::string& text, std::string_view character) {
  const char first = character.front();
  if (first == '"' || first == '\\') {
    text += '\\';
    text += first;
  } else if (static_cast<unsigned char>(first) < 0x20) {
    constexpr std::string_view digits = "0123456789abcdef";
    text += "\\u00";
    text += digits[static_cast<unsigned char>(first) >> 4U];
    text += digits[static_cast<unsigned char>(first) & 0xFU];
  } else {
    text += character;
  }
}

constexpr std::size_t longestEscape = 6; // \u00XX

} // namespace

Addressed readEnvelope(std::string_view content) {
  std::string_view rest = content;
  if (!rest.starts_with(clientKey))
    throw noEnvelope();
  rest.remove_prefix(clientKey.size());
  Addressed addressed;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), addressed.client);
  const auto digits = static_cast<std::size_t>(end - rest.data());
  if (error != std::errc() || addressed.client >= numbersEnd || (rest.front() == '0' && digits > 1))
    throw noEnvelope();
  rest.remove_prefix(digits);
  if (!rest.starts_with(messageKey) || !rest.ends_with('}') || rest.size() < messageKey.size() + 2)
    throw noEnvelope();
  addressed.begin = content.size() - rest.size() + messageKey.size();
  addressed.end = content.size() - 1;
  return addressed;
}

std::string goneFrame(ClientNumber client) {
  std::string frame;
  appendFrame(frame, std::string(clientKey) + std::to_string(client) + R"(,"gone":true})");
  return frame;
}

MessagePieces::MessagePieces(ClientNumber client)
    : opening_(std::string(clientKey) + std::to_string(client) + std::string(textKey)) {}

void MessagePieces::feed(std::string_view bytes, std::string& frames) {
  while (!bytes.empty()) {
    if (!isInContent_) {
      if (!head_.take(bytes))
        return;
      missing_ = head_.finish();
      isInContent_ = true;
    }
    const std::size_t count = std::min(bytes.size(), missing_);
    missing_ -= count;
    isInContent_ = missing_ > 0;
    feedContent(bytes.substr(0, count), !isInContent_, frames);
    bytes.remove_prefix(count);
  }
}

void MessagePieces::feedContent(std::string_view text, bool isEnd, std::string& frames) {
  const std::string joined = cutCharacter_.empty() ? std::string() : std::exchange(cutCharacter_, {}).append(text);
  if (!joined.empty())
    text = joined;
  const std::size_t room = longestFrameForBrowser - opening_.size() - closingWithoutMore.size() - longestEscape;
  for (std::size_t index = 0; index < text.size();) {
    const std::size_t length = session::characterAt(text, index).length;
    if (length == 0) {
      if (isEnd || text.size() - index >= longestCharacter)
        throw Malformed("a message is not UTF-8");
      cutCharacter_ = text.substr(index);
      break;
    }
    if (piece_.size() > room)
      finishPiece(true, frames);
    appendEscaped(piece_, text.substr(index, length));
    index += length;
  }
  if (isEnd || !piece_.empty())
    finishPiece(!isEnd, frames);
}

void MessagePieces::finishPiece(bool isMore, std::string& frames) {
  appendFrame(frames, opening_ + piece_ + std::string(isMore ? closingWithMore : closingWithoutMore));
  piece_.clear();
}

} // namespace tabwright::relay
