#include "platform/AppleEvent.h"

#include <gtest/gtest.h>

#include <limits>

namespace tabwright::platform {
namespace {

using D = AppleEventDescriptor;

TEST(AppleEventDescriptor, CountsItemsFromOneAndOnlyInLists) {
  const D list = D::list({D::integer(7), D::string("x")});
  EXPECT_EQ(list.numberOfItems(), 2u);
  EXPECT_FALSE(list.descriptorAtIndex(0));
  EXPECT_EQ(list.descriptorAtIndex(2)->stringValue(), "x");
  EXPECT_FALSE(list.descriptorAtIndex(3));
  EXPECT_EQ(D::string("xy").numberOfItems(), 0u);
  EXPECT_FALSE(D::string("xy").descriptorAtIndex(1));
}

TEST(AppleEventDescriptor, CoercesToNumbersAndBooleansWithoutFailing) {
  EXPECT_EQ(D::real(-2.9).int32Value(), -2);
  EXPECT_EQ(D::real(1e10).int32Value(), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(D::real(std::numeric_limits<double>::quiet_NaN()).int32Value(), 0);
  EXPECT_EQ(D::string("-12").int32Value(), -12);
  EXPECT_EQ(D::string("12 tabs").int32Value(), 0);
  EXPECT_EQ(D::other("missing value").int32Value(), 0);
  EXPECT_TRUE(D::integer(2).booleanValue());
  EXPECT_FALSE(D::integer(0).booleanValue());
  EXPECT_FALSE(D::string("true").booleanValue());
  EXPECT_EQ(D::integer(2).stringValue(), std::nullopt);
}

TEST(AppleEventDescriptor, DescribesItselfForLogs) {
  const D nested = D::list(
      {D::boolean(true), D::string("a\"b"), D::list({D::integer(1), D::real(0.5)}), D(), D::other("missing value")});
  EXPECT_EQ(nested.description(), "{true, \"a\\\"b\", {1, 0.5}, null, missing value}");
}

} // namespace
} // namespace tabwright::platform
