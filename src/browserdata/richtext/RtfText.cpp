// Characters go by UTF-16 unit: \u takes these, as signed numbers, so that surrogates need no thought.
#include "browserdata/richtext/RtfText.h"

#include "platform/AsciiCase.h"

#include <fmt/core.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace tabwright::browserdata {
namespace {

struct Escape {
  char16_t character;
  std::string_view text;
};

// The characters that have a control symbol or word of their own.
constexpr std::array<Escape, 8> escapes{{
    {u'\\', "\\\\"},
    {u'{', "\\{"},
    {u'}', "\\}"},
    {u'\t', "\\tab "},
    {u'\n', "\\line "},
    {u'\u00A0', "\\~"},
    {u'\u00AD', "\\-"},
    {u'\u2011', "\\_"},
}};

constexpr std::array<std::string_view, 4> fieldProtocols{"http:", "https:", "mailto:", "ftp:"};

} // namespace

void appendRtf(std::string& out, std::u16string_view text) {
  for (const char16_t unit : text) {
    const auto* escape = std::ranges::find(escapes, unit, &Escape::character);
    if (escape != escapes.end())
      out += escape->text;
    else if (unit >= 0x20 && unit < 0x7F)
      out += static_cast<char>(unit);
    // The rest are controls, of ASCII and of the block behind it.
    else if (unit >= 0xA0)
      fmt::format_to(std::back_inserter(out), "\\u{}?", static_cast<std::int16_t>(unit));
  }
}

void appendUtf16(std::u16string& out, std::string_view text) {
  const char* bytes = text.data();
  for (std::size_t at = 0; at < text.size();) {
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(bytes, at, text.size(), character);
    if (U_IS_BMP(character)) {
      out += static_cast<char16_t>(character);
    } else {
      out += static_cast<char16_t>(U16_LEAD(character));
      out += static_cast<char16_t>(U16_TRAIL(character));
    }
  }
}

std::optional<std::string> fieldAddress(std::string_view address) {
  // Around addresses and within, the URL standard drops these.
  constexpr std::string_view blanks = " \t\n\f\r";
  const std::size_t start = address.find_first_not_of(blanks);
  if (start == std::string_view::npos)
    return std::nullopt;
  address = address.substr(start, address.find_last_not_of(blanks) - start + 1);

  std::string result;
  for (const char c : address) {
    if (c == '\t' || c == '\n' || c == '\r')
      continue;
    const auto byte = static_cast<unsigned char>(c);
    if (byte <= ' ' || byte >= 0x7F || std::string_view("\"\\{}<>^`|").find(c) != std::string_view::npos)
      fmt::format_to(std::back_inserter(result), "%{:02X}", byte);
    else
      result += c;
  }
  // Looked at when the address is ready: what was dropped or escaped may have hidden another protocol.
  const bool isTaken = std::ranges::any_of(fieldProtocols, [&](std::string_view protocol) {
    return result.size() > protocol.size() &&
           platform::equalIgnoringCase(protocol, std::string_view(result).substr(0, protocol.size()));
  });
  return isTaken ? std::optional(result) : std::nullopt;
}

} // namespace tabwright::browserdata
