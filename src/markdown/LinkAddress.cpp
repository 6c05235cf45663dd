// An allow list of schemes: an address is opened by a click, and "javascript:" or "file:" must not be.
#include "markdown/LinkAddress.h"

#include "platform/AsciiCase.h"

#include <algorithm>
#include <array>

namespace tabwright::markdown {
namespace {

constexpr std::array<std::string_view, 3> schemes{"http", "https", "mailto"};
// Within the printable ASCII, the characters that RFC 3986 has no place for, and the apostrophe, which ends attributes.
constexpr std::string_view unsafe = " \"'<>\\^`{|}";
constexpr std::string_view digits = "0123456789ABCDEF";

} // namespace

std::optional<std::string> openableAddress(std::string_view address) {
  // A blank or a control before the scheme makes it another, unknown one, so nothing is trimmed here.
  const std::size_t colon = address.find(':');
  if (colon == std::string_view::npos ||
      std::ranges::find(schemes, platform::lowercased(address.substr(0, colon))) == schemes.end())
    return std::nullopt;
  std::string result;
  for (const char character : address) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte > 0x20 && byte < 0x7F && !unsafe.contains(character))
      result += character;
    else
      result.append("%").append(1, digits[byte >> 4U]).append(1, digits[byte & 0xFU]);
  }
  return result;
}

} // namespace tabwright::markdown
