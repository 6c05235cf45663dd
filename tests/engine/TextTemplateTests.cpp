#include "engine/TextTemplate.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tabwright::engine {
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

} // namespace
} // namespace tabwright::engine
