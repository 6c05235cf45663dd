#include "platform/TerminalCells.h"

#include <gtest/gtest.h>

namespace tabwright::platform {
namespace {

TEST(TerminalCells, CountsAndCutsByCells) {
  EXPECT_EQ(cellsOf("e\xCC\x81"), 1U); // e and a combining acute
  EXPECT_EQ(cellsOf("日本"), 4U);
  EXPECT_EQ(fitted("日本語", 5), "日本…");
  EXPECT_EQ(fitted("日本語", 4), "日…");
  EXPECT_EQ(fitted("abc", 3), "abc");
  EXPECT_EQ(fitted("abcd", 3), "ab…");
  EXPECT_EQ(cellsOf("\u1112\u1161\u11AB"), 2U); // one Korean syllable of three letters
  EXPECT_EQ(onOneLine("  a \n\t b\x7f"), "a b");
}

} // namespace
} // namespace tabwright::platform
