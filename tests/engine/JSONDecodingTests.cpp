#include "engine/JSONDecoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::engine {
namespace {

using testing::ElementsAre;

TEST(JSONDecoding, ReadsFragmentsAndLists) {
  EXPECT_EQ(decodeJSON<std::string>("\"a\\u00fc\\/\""), "aü/");
  EXPECT_TRUE(decodeJSON<bool>(" true\n"));
  EXPECT_THAT(decodeJSON<std::vector<std::string>>("[\n\n]"), testing::IsEmpty());
  EXPECT_THAT(decodeJSON<std::vector<std::string>>("[\n  \"a\",\n  \"b\"\n]"), ElementsAre("a", "b"));
}

} // namespace
} // namespace tabwright::engine
