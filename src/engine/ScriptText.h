#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tabwright::engine {

/// `text` as it goes between double quotes in generated AppleScript or JavaScript: each backslash and each double quote
/// gets a backslash in front. Nothing else changes; line feeds stay.
///
///     escapeForLiteral(R"(a[href="x"])")   // a[href=\"x\"]
[[nodiscard]] std::string escapeForLiteral(std::string_view text);

/// The same for a literal of JavaScript between double quotes, where line feeds and carriage returns may not stand as
/// such: they become "\n" and "\r".
[[nodiscard]] std::string escapeForJavascript(std::string_view text);

/// The id by which scripts know a tab or window: `fullID` without everything up to and including the first colon that
/// has a character before it, as the regular expression "^.+?:" takes it away. A text without such a colon is
/// unchanged.
///
///     nativeID("com.apple.safari:17:3")    // 17:3
[[nodiscard]] std::string nativeID(std::string_view fullID);

/// The pieces of a script with a line feed between each two of them. An empty piece in the middle leaves an empty line.
[[nodiscard]] std::string joinedLines(std::initializer_list<std::string_view> pieces);

/// The shortest decimal text that reads back as `value`, always with a fraction: 0.2, 1.0, 788918400.123456. Values
/// beyond 2^53 or below 0.0001 come with an exponent: 1e+16, 1e-05. Not a number is "nan", infinities "inf" and "-inf".
[[nodiscard]] std::string textOfDouble(double value);

} // namespace tabwright::engine
