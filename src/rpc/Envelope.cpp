// Texts are passed over as a whole and brackets counted, so that only members of the outermost object are looked at. No
// parser is asked, since none takes a text that ends in the middle or is no JSON further on.
#include "rpc/Envelope.h"

#include <boost/json/parse.hpp>

#include <algorithm>
#include <cstddef>

namespace tabwright::rpc {
namespace {

constexpr std::string_view blanks = " \t\r\n";

// The place behind the text whose opening quotation mark stands at `start`.
std::size_t endOfText(std::string_view text, std::size_t start) {
  for (std::size_t at = start + 1; at < text.size(); ++at) {
    if (text[at] == '\\')
      ++at;
    else if (text[at] == '"')
      return at + 1;
  }
  return text.size();
}

boost::json::value idAt(std::string_view text, std::size_t start) {
  if (start >= text.size())
    return nullptr;
  const std::size_t end = text[start] == '"' ? endOfText(text, start) : text.find_first_of(",}", start);
  if (end >= text.size()) // more may belong to it
    return nullptr;
  boost::system::error_code error;
  boost::json::value id = boost::json::parse(text.substr(start, end - start), error);
  return !error && (id.is_string() || id.is_number()) ? id : boost::json::value(nullptr);
}

} // namespace

Envelope envelopeOf(std::string_view text) {
  Envelope envelope;
  std::size_t depth = 0;
  for (std::size_t at = 0; at < text.size();) {
    const char character = text[at];
    if (character != '"') {
      if (character == '{' || character == '[')
        ++depth;
      else if ((character == '}' || character == ']') && depth > 0)
        --depth;
      ++at;
      continue;
    }
    const std::size_t end = endOfText(text, at);
    const std::string_view key = text.substr(at, end - at);
    at = end;
    // A text without a colon behind it is a value, not a key.
    const std::size_t colon = depth == 1 ? text.find_first_not_of(blanks, end) : std::string_view::npos;
    if (colon == std::string_view::npos || text[colon] != ':')
      continue;
    at = std::min(text.find_first_not_of(blanks, colon + 1), text.size());
    if (key == "\"method\"")
      envelope.hasMethod = true;
    else if (key == "\"id\"")
      envelope.id = idAt(text, at);
  }
  return envelope;
}

} // namespace tabwright::rpc
