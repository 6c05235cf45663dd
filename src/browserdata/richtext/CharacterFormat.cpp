// One table has the control words of each style: of text in general, and of text in complex scripts, which readers keep
// apart.
#include "browserdata/richtext/CharacterFormat.h"

#include <array>
#include <string_view>

namespace tabwright::browserdata {
namespace {

using enum CharacterFormat::Style;

struct StyleWords {
  CharacterFormat::Style style;
  std::string_view word;
  std::string_view complexWord; // empty: the style is the same for all scripts
};

// The fonts and colours are those that `DocumentFrame.h` declares.
constexpr std::array<StyleWords, 9> styleWords{{
    {bold, "\\b", "\\ab"},
    {italic, "\\i", "\\ai"},
    {underlined, "\\ul", "\\aul"},
    {struckOut, "\\strike", "\\astrike"},
    {lowered, "\\sub", ""},
    {raised, "\\super", ""},
    {fixedPitch, "\\f1", "\\af1"},
    {highlighted, "\\highlight2", ""},
    {linkColoured, "\\cf1", ""},
}};

} // namespace

void CharacterFormat::add(std::uint16_t more) {
  constexpr std::uint16_t shifted = lowered | raised;
  if (more & shifted)
    styles &= static_cast<std::uint16_t>(~shifted);
  styles |= more;
}

void appendControlWords(std::string& out, std::uint16_t styles, bool isRightToLeft) {
  if (isRightToLeft)
    out += "\\ltrch";
  for (const StyleWords& entry : styleWords) {
    if (styles & entry.style)
      out += entry.word;
  }
  if (!isRightToLeft)
    return;
  out += "\\rtlch";
  for (const StyleWords& entry : styleWords) {
    if (styles & entry.style)
      out += entry.complexWord;
  }
}

} // namespace tabwright::browserdata
