// The fixed parts of each document. Sizes of headings are those of browsers' own style sheets. A heading's words stand
// in its style and in each paragraph of it; `ParagraphFormat.cpp` says why.
#include "browserdata/richtext/DocumentFrame.h"

#include <fmt/core.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace tabwright::browserdata {
namespace {

constexpr std::string_view start = R"({\rtf1\ansi\ansicpg1252\deff0\adeff0\uc1
{\fonttbl{\f0\froman\fcharset0 Times New Roman;}{\f1\fmodern\fprq1\fcharset0 Courier New;}}
{\colortbl;\red0\green0\blue238;\red255\green255\blue0;}
{\stylesheet{\s0\snext0 Normal;}
)";

constexpr std::array<int, 6> headingSizes{48, 36, 28, 24, 20, 18}; // half points

} // namespace

// Readers apply the last direction that they meet, so a heading runs from left to right unless its runs say otherwise.
std::string headingWords(int level) {
  const int size = headingSizes.at(static_cast<std::size_t>(level) - 1);
  return fmt::format("\\outlinelevel{}\\keepn\\sb240\\rtlch\\ab\\afs{}\\ltrch\\b\\fs{}", level - 1, size, size);
}

std::string documentStart() {
  std::string result(start);
  for (int level = 1; level <= 6; ++level)
    result += fmt::format("{{\\s{}{}\\sbasedon0\\snext0 heading {};}}\n", level, headingWords(level), level);
  return result + "}\n";
}

} // namespace tabwright::browserdata
