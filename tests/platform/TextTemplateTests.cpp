#include "platform/TextTemplate.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tabwright::platform {
namespace {

TEST(TextTemplate, FillsEveryPlaceholderInOnePass) {
  const TextTemplate text("__A_B__x__C____A_B__\n");
  EXPECT_EQ(text.fill({{"A_B", "__C__"}, {"C", ""}, {"UNUSED", "u"}}), "__C__x__C__");
  EXPECT_THROW(static_cast<void>(text.fill({{"A_B", "1"}})), std::logic_error);
}

TEST(TextTemplate, TakesOtherUnderscoresAsText) {
  const TextTemplate text("my __isPrivate__(x) ____ __ __A__ __\n\n");
  EXPECT_EQ(text.fill({{"A", "1"}}), "my __isPrivate__(x) ____ __ 1 __\n");
  EXPECT_EQ(TextTemplate("").fill({}), "");
}

TEST(TextTemplate, FindsItsPartsAgain) {
  const TextTemplate text("a __A__ b __WORK__ c __C__ d");
  const auto parts = text.match("a 1 b 2 b c c 3 c 4 d", "WORK");
  ASSERT_TRUE(parts);
  EXPECT_EQ(*parts, (TextTemplate::Parts{{"A", "1"}, {"WORK", "2 b c c 3"}, {"C", "4"}}));
  EXPECT_EQ(TextTemplate("x __A__").match("x y", "A")->at("A"), "y");
  for (const char* other : {"", "a ", "a  d", "a 1 b 2 d", "a 1 c 2 d", "a 1 b 2 c 3 e", " a 1 b 2 c 3 d"})
    EXPECT_FALSE(text.match(other, "WORK")) << other;
}

} // namespace
} // namespace tabwright::platform
