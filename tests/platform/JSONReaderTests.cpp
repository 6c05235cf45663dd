#include "platform/JSONReader.h"
#include "platform/JSONText.h"
#include "support/FailureText.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace tabwright::platform {
namespace {

struct Point {
  std::string name;
  std::int64_t x = 0;
  bool isVisible = false;

  static Point fromJSON(const JSONReader& json) {
    return {.name = json.require<std::string>("name"),
            .x = json.find<std::int64_t>("x").value_or(7),
            .isVisible = json.find<bool>("isVisible").value_or(true)};
  }
};

template <class T>
T read(std::string_view text) {
  const boost::json::value json = parseJSON(text);
  return JSONReader(json).read<T>();
}

template <class T>
std::string complaint(std::string_view text) {
  try {
    static_cast<void>(read<T>(text));
    return "none";
  } catch (const JSONMismatch& mismatch) {
    return mismatch.clause();
  }
}

TEST(JSONReader, ReadsRecordsWithTheirDefaults) {
  const auto points =
      read<std::vector<Point>>(R"([{"name" : "p", "x" : null, "more" : []}, {"name":"q","x":2.0,"isVisible":false}])");
  ASSERT_EQ(points.size(), 2u);
  EXPECT_EQ(points[0].x, 7);
  EXPECT_TRUE(points[0].isVisible);
  EXPECT_EQ(points[1].x, 2);
  EXPECT_FALSE(points[1].isVisible);
}

TEST(JSONReader, TellsWhereAShapeIsWrong) {
  EXPECT_EQ(complaint<std::string>("1"), "expected a text, found a number");
  EXPECT_EQ(complaint<bool>("\"true\""), "expected a boolean, found a text");
  EXPECT_EQ(complaint<bool>("1"), "expected a boolean, found a number");
  EXPECT_EQ(complaint<double>("\"1\""), "expected a number, found a text");
  EXPECT_EQ(complaint<std::int64_t>("1.5"), "expected a whole number, found a number");
  EXPECT_EQ(complaint<std::size_t>("-1"), "expected a whole number, found a number");
  EXPECT_EQ(complaint<int>("4294967296"), "expected a whole number, found a number");
  EXPECT_EQ(complaint<std::vector<std::string>>("{}"), "expected a list, found an object");
  EXPECT_EQ(complaint<std::vector<std::string>>("[\"a\", null]"), "[1]: expected a text, found null");
  EXPECT_EQ(complaint<std::vector<Point>>(R"([{"name":"p"},{"name":"q","x":"2"}])"),
            "[1].x: expected a whole number, found a text");
  EXPECT_EQ(complaint<Point>("[]"), "expected an object, found a list");
  EXPECT_EQ(complaint<Point>("{}"), "name: the key is missing");
  EXPECT_EQ(complaint<Point>(R"({"name":null})"), "name: expected a text, found null");
}

TEST(JSONReader, KeepsThePlaceOnItsWayInwards) {
  const boost::json::value json = parseJSON(R"({"frames":[{},{"points":[[],[{"name":0}]]}]})");
  const auto frames = JSONReader(json).require<std::vector<JSONReader>>("frames");
  EXPECT_FALSE(frames[0].find<JSONReader>("points"));
  EXPECT_EQ(testsupport::failureText([&] { return frames[1].require<std::vector<std::vector<Point>>>("points"); }),
            "The JSON has another shape: frames[1].points[1][0].name: expected a text, found a number.");
}

} // namespace
} // namespace tabwright::platform
