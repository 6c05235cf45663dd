// Any bytes of a client's and of the browser's, cut anywhere: what goes to the browser is well-formed, within its
// bounds and the same however the bytes were cut; an envelope's message lies within it.
#include "relay/Envelope.h"

#include <boost/json/parse.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

using namespace tabwright;

namespace {

void require(bool isSo) {
  if (!isSo)
    std::abort();
}

/// The texts of all pieces, each after a mark of whether its message goes on; nothing where the bytes were refused.
std::optional<std::string> textOf(std::string_view bytes, std::size_t step) {
  relay::MessagePieces pieces(1);
  std::string frames;
  try {
    for (std::size_t at = 0; at < bytes.size(); at += step)
      pieces.feed(bytes.substr(at, step), frames);
  } catch (const relay::Malformed&) {
    return std::nullopt;
  }
  std::string texts;
  relay::FrameReader reader;
  reader.feed(frames, [&](const std::string& content) {
    require(content.size() <= relay::longestFrameForBrowser);
    const auto piece = boost::json::parse(content).as_object();
    texts += std::string_view(piece.at("text").as_string());
    if (!piece.at("more").as_bool())
      texts += '\xff'; // which no text has
  });
  require(!reader.isWithinFrame());
  return texts;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto whole = textOf(bytes, std::max<std::size_t>(size, 1));
  for (const std::size_t step : {1, 3, 64}) {
    const auto cut = textOf(bytes, step);
    require(cut == whole);
  }
  try {
    const relay::Addressed addressed = relay::readEnvelope(bytes);
    require(addressed.begin >= relay::headSize && addressed.begin < addressed.end && addressed.end < size);
  } catch (const relay::Malformed&) {
    // As most bytes are.
  }
  relay::FrameReader reader;
  try {
    reader.feed(bytes, [](const std::string&) {});
  } catch (const relay::Malformed&) {
    // A length that nobody means.
  }
  return 0;
}
