#include "engine/ScriptText.h"
#include "engine/ULID.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tabwright::engine {
namespace {

TEST(JoinedLines, KeepEmptyPieces) {
  EXPECT_EQ(joinedLines({"a", "", "b\n", "c"}), "a\n\nb\n\nc");
  EXPECT_EQ(joinedLines({"", "a"}), "\na");
  EXPECT_EQ(joinedLines({}), "");
}

TEST(NativeID, LosesEverythingThroughTheFirstColon) {
  EXPECT_EQ(nativeID("com.apple.safari:17:3"), "17:3");
  EXPECT_EQ(nativeID("com.google.chrome:8"), "8");
  EXPECT_EQ(nativeID("8"), "8");
  EXPECT_EQ(nativeID("a:"), "");
  EXPECT_EQ(nativeID(""), "");
  EXPECT_EQ(nativeID(":8"), ":8");
  EXPECT_EQ(nativeID("::8"), "8");
  EXPECT_EQ(nativeID("a\nb:8"), "a\nb:8");
}

TEST(TextOfDouble, IsTheShortestThatReadsBack) {
  const std::vector<std::pair<double, std::string>> rows{{0.2, "0.2"},
                                                         {1, "1.0"},
                                                         {10, "10.0"},
                                                         {0, "0.0"},
                                                         {-0.0, "-0.0"},
                                                         {-2.5, "-2.5"},
                                                         {0.1 + 0.2, "0.30000000000000004"},
                                                         {788918400.25, "788918400.25"},
                                                         {0.0001, "0.0001"},
                                                         {0.00001, "1e-05"},
                                                         {1e15, "1000000000000000.0"},
                                                         {9007199254740992, "9007199254740992.0"},
                                                         {1e16, "1e+16"},
                                                         {1.5e300, "1.5e+300"},
                                                         {std::nan(""), "nan"},
                                                         {-std::numeric_limits<double>::infinity(), "-inf"}};
  for (const auto& [value, text] : rows)
    EXPECT_EQ(textOfDouble(value), text);
}

TEST(ULID, HasTheTimeInFrontAndTheRandomBitsBehind) {
  // The example of the published format: 01ARYZ6S41 is 1469918176385.
  std::array<std::uint8_t, 10> bytes{};
  EXPECT_EQ(ulid(std::chrono::milliseconds(1469918176385), bytes), "01ARYZ6S410000000000000000");
  bytes.fill(0xff);
  EXPECT_EQ(ulid(std::chrono::milliseconds((std::int64_t{1} << 48) - 1), bytes), "7ZZZZZZZZZZZZZZZZZZZZZZZZZ");
  bytes = {0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
  EXPECT_EQ(ulid(std::chrono::milliseconds(1), bytes), "00000000010000000100000001");
}

} // namespace
} // namespace tabwright::engine
