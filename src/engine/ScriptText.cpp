// The two replacements are written out, since a regular expression would cost more than the rest of a script's making.
// Numbers come from `std::to_chars`, which knows the shortest text and no locale.
#include "engine/ScriptText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <system_error>

namespace tabwright::engine {
namespace {

// The characters that "." of a regular expression doesn't match: LF, VT, FF, CR, NEL, LS and PS.
bool holdsLineTerminator(std::string_view text) {
  return text.find_first_of("\n\v\f\r") != std::string_view::npos || text.find("\u0085") != std::string_view::npos ||
         text.find("\u2028") != std::string_view::npos || text.find("\u2029") != std::string_view::npos;
}

bool needsBackslash(char c) {
  return c == '\\' || c == '"';
}

} // namespace

std::string escapeForLiteral(std::string_view text) {
  std::string escaped(text.size() + static_cast<std::size_t>(std::ranges::count_if(text, needsBackslash)), '\\');
  auto out = escaped.begin();
  for (const char c : text) {
    out += needsBackslash(c) ? 1 : 0;
    *out++ = c;
  }
  return escaped;
}

std::string escapeForJavascript(std::string_view text) {
  std::string escaped;
  for (const char c : escapeForLiteral(text)) {
    if (c == '\n')
      escaped += "\\n";
    else if (c == '\r')
      escaped += "\\r";
    else
      escaped += c;
  }
  return escaped;
}

std::string nativeID(std::string_view fullID) {
  // The expression wants a character before the colon, so one at the very start isn't looked at.
  const std::size_t colon = fullID.find(':', 1);
  if (colon == std::string_view::npos || holdsLineTerminator(fullID.substr(0, colon)))
    return std::string(fullID);
  return std::string(fullID.substr(colon + 1));
}

std::string joinedLines(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view& piece : pieces) {
    if (&piece != pieces.begin())
      text += '\n';
    text += piece;
  }
  return text;
}

std::string textOfDouble(double value) {
  if (std::isnan(value))
    return "nan";
  if (std::isinf(value))
    return value < 0 ? "-inf" : "inf";
  // Shortest digits in the form d.ddde±xx, from which both layouts are made.
  char scientific[32];
  const auto [end, error] =
      std::to_chars(scientific, scientific + sizeof scientific, value, std::chars_format::scientific);
  const std::string_view shortest(scientific, error == std::errc() ? static_cast<std::size_t>(end - scientific) : 0);
  const std::size_t exponentMark = shortest.find('e');
  const int exponent = std::atoi(std::string(shortest.substr(exponentMark + 1)).c_str());
  constexpr double firstWithGaps = 9007199254740992.0; // 2^53
  if (value != 0 && (exponent < -4 || std::abs(value) > firstWithGaps))
    return std::string(shortest);
  char plain[64];
  const auto [plainEnd, plainError] = std::to_chars(plain, plain + sizeof plain, value, std::chars_format::fixed);
  std::string text(plain, plainError == std::errc() ? static_cast<std::size_t>(plainEnd - plain) : 0);
  if (text.find('.') == std::string::npos)
    text += ".0";
  return text;
}

} // namespace tabwright::engine
