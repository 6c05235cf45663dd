#include "engine/JSONDecoding.h"
#include "engine/errors/StringError.h"
#include "support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::engine {
namespace {
struct Point {
  std::string name;
  std::int64_t x = 0;
  bool isVisible = false;
};
} // namespace

template <>
struct JSONDecoding<Point> {
  static Point from(const boost::json::value& json) {
    const boost::json::object& object = requireObject(json);
    return {.name = requiredField<std::string>(object, "name"),
            .x = fieldOr<std::int64_t>(object, "x", 7),
            .isVisible = fieldOr<bool>(object, "isVisible", true)};
  }
};

namespace {

using testing::ElementsAre;

// The reason in the log, with the failure thrown checked.
template <class T>
std::string reasonAgainst(std::string_view json) {
  const testsupport::LogCapture log;
  try {
    static_cast<void>(decodeJSON<T>(json));
    return "none";
  } catch (const platform::CatalogueFailure<StringError>& failure) {
    EXPECT_EQ(failure.kind(), StringError::unableToDecodeJSON);
  }
  const auto lines = log.linesOf("error Scriptacular: ");
  return lines.size() == 1 ? lines.front().substr(20) : "not logged once";
}

TEST(JSONDecoding, ReadsFragmentsAndLists) {
  EXPECT_EQ(decodeJSON<std::string>("\"a\\u00fc\\/\""), "aü/");
  EXPECT_TRUE(decodeJSON<bool>(" true\n"));
  EXPECT_THAT(decodeJSON<std::vector<std::string>>("[\n\n]"), testing::IsEmpty());
  EXPECT_THAT(decodeJSON<std::vector<std::string>>("[\n  \"a\",\n  \"b\"\n]"), ElementsAre("a", "b"));
  EXPECT_EQ(decodeJSON<std::int64_t>("3.0"), 3);
}

TEST(JSONDecoding, ReadsRecordsWithTheirDefaults) {
  const auto points = decodeJSON<std::vector<Point>>(
      R"([{"name" : "p", "x" : null, "more" : []}, {"name":"q","x":2,"isVisible":false}])");
  ASSERT_EQ(points.size(), 2u);
  EXPECT_EQ(points[0].x, 7);
  EXPECT_TRUE(points[0].isVisible);
  EXPECT_EQ(points[1].x, 2);
  EXPECT_FALSE(points[1].isVisible);
}

TEST(JSONDecoding, TellsWhereATypeIsWrong) {
  EXPECT_EQ(reasonAgainst<std::string>("1"), "expected a text, found a number");
  EXPECT_EQ(reasonAgainst<bool>("\"true\""), "expected a boolean, found a text");
  EXPECT_EQ(reasonAgainst<bool>("1"), "expected a boolean, found a number");
  EXPECT_EQ(reasonAgainst<std::int64_t>("1.5"), "expected a whole number, found a number");
  EXPECT_EQ(reasonAgainst<std::vector<std::string>>("{}"), "expected a list, found a record");
  EXPECT_EQ(reasonAgainst<std::vector<std::string>>("[\"a\", null]"), "[1]: expected a text, found null");
  EXPECT_EQ(reasonAgainst<std::vector<Point>>(R"([{"name":"p"},{"name":"q","x":"2"}])"),
            "[1].x: expected a whole number, found a text");
  EXPECT_EQ(reasonAgainst<Point>("{}"), "name: the key is missing");
  EXPECT_EQ(reasonAgainst<Point>(R"({"name":null})"), "name: expected a text, found null");
}

TEST(JSONDecoding, RefusesWhatIsNoJSON) {
  for (const char* text : {"", "{", "[1,]", "nope", "\"a", "\"\xff\"", "1 2"})
    EXPECT_NE(reasonAgainst<std::string>(text), "none") << text;
}

} // namespace
} // namespace tabwright::engine
