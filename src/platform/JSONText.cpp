// Parsing is the library's, with its reasons put into words of ours and its place turned into line and column. Writing
// is our own: runs of bytes that stand for themselves are appended whole, and only what has to be looked at is decoded,
// so a plain text costs one pass and one copy.
#include "platform/JSONText.h"

#include "platform/JSONFailure.h"

#include <boost/json/error.hpp>
#include <boost/json/parser.hpp>
#include <fmt/core.h>
#include <unicode/utf8.h>

#include <array>
#include <cstdint>

namespace tabwright::platform {

namespace {

std::string reasonOf(const boost::system::error_code& code) {
  using boost::json::error;
  // The library tells many reasons; those that a writer of JSON can act on have a sentence of their own.
  switch (static_cast<error>(code.value())) {
  case error::incomplete:
    return "it ends too early";
  case error::too_deep:
    return "it is nested too deeply";
  case error::exponent_overflow:
  case error::not_exact:
    return "a number that is too large";
  case error::illegal_leading_surrogate:
  case error::illegal_trailing_surrogate:
  case error::expected_utf16_escape:
    return "half of a surrogate pair";
  case error::expected_hex_digit:
    return "an escape without its four hexadecimal digits";
  default:
    return "something that can't stand here";
  }
}

// A table, since most bytes of most texts are looked up in it.
constexpr auto plainBytes = [] {
  std::array<bool, 256> plain{};
  for (std::size_t byte = 0x20; byte < 0x80; ++byte)
    plain[byte] = byte != '"' && byte != '\\';
  return plain;
}();

void appendEscaped(std::string& output, unsigned char byte) {
  constexpr std::string_view special = "/\"\\\n\t\r\b\f";
  constexpr std::string_view letters = "/\"\\ntrbf";
  if (const auto position = special.find(static_cast<char>(byte)); position != std::string_view::npos)
    (output += '\\') += letters[position];
  else
    output += fmt::format("\\u{:04x}", byte);
}

} // namespace

boost::json::value parseJSON(std::string_view text, std::size_t deepest) {
  boost::json::parse_options options;
  options.max_depth = deepest;
  // Small documents are parsed without the heap.
  unsigned char firstMemory[4096];
  boost::json::parser parser({}, options, firstMemory);
  boost::system::error_code error;
  // `write_some` tells how far it came, also where the document is whole and something follows.
  const std::size_t length = parser.write_some(text.data(), text.size(), error);
  if (error)
    throw JSONFailure(reasonOf(error), text.substr(0, length));
  if (length < text.size())
    throw JSONFailure("more behind its end", text.substr(0, length));
  return parser.release();
}

void appendJSONText(std::string& output, std::string_view text, Slashes slashes) {
  output += '"';
  std::size_t from = 0;
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (plainBytes[byte] && (byte != '/' || slashes == Slashes::plain)) {
      ++at;
    } else if (byte < 0x80) {
      output.append(text, from, at - from);
      appendEscaped(output, byte);
      from = ++at;
    } else {
      auto next = static_cast<std::int32_t>(at);
      UChar32 character = 0;
      U8_NEXT(text.data(), next, static_cast<std::int32_t>(text.size()), character);
      // JSON is UTF-8 (RFC 8259), so a byte that isn't must not get out.
      if (character < 0) {
        output.append(text, from, at - from).append("\xEF\xBF\xBD");
        from = static_cast<std::size_t>(next);
      }
      at = static_cast<std::size_t>(next);
    }
  }
  output.append(text, from);
  output += '"';
}

} // namespace tabwright::platform
