#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::browserdata {

/// Appends text as it stands in Rich Text Format: ASCII, its own signs escaped, other characters by their number with
/// "?" for readers that don't know it. Line feeds become line breaks, tabs tabs; other control characters are dropped.
void appendRtf(std::string& out, std::u16string_view text);

/// Appends UTF-8 as UTF-16; bytes that aren't UTF-8 become U+FFFD.
void appendUtf16(std::u16string& out, std::string_view text);

/// An address of a page as a field can hold it: absolute and of http, https, mailto or ftp, in characters that mean
/// nothing to Rich Text Format or to fields (others are percent-encoded). Nothing for any other address.
[[nodiscard]] std::optional<std::string> fieldAddress(std::string_view address);

} // namespace tabwright::browserdata
