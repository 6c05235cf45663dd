#include "platform/Whitespace.h"

#include <gtest/gtest.h>

namespace tabwright::platform {
namespace {

TEST(Whitespace, IsTrimmedAtBothEndsInAllItsUnicodeForms) {
  EXPECT_EQ(trimmingWhitespaceAndNewlines("\t\u00a0 a \u2003b\r\n\u2028\u0085"), "a \u2003b");
  EXPECT_EQ(trimmingWhitespaceAndNewlines("\xff \x80"), "\xff \x80");
  EXPECT_TRUE(isBlank(""));
  EXPECT_TRUE(isBlank(" \u3000\v\f"));
  EXPECT_FALSE(isBlank("\u200b")); // zero width space is no white space
}

} // namespace
} // namespace tabwright::platform
