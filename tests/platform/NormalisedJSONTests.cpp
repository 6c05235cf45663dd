#include "platform/JSONFailure.h"
#include "platform/NormalisedJSON.h"
#include "support/FailureText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tabwright::platform {
namespace {

using namespace std::string_view_literals;

std::string complaint(std::string_view data) {
  return testsupport::failureText([&] { return normalisedJSON(data); });
}

TEST(NormalisedJSON, LeavesOutTheLayoutAndKeepsTheOrder) {
  EXPECT_EQ(normalisedJSON("\r\n{ \"b\" : [ 1 , true,\tnull, { } ] ,\n  \"a\" : { \"d\" : \"x y\", \"c\":[] } } \n"),
            R"({"b":[1,true,null,{}],"a":{"d":"x y","c":[]}})");
  EXPECT_EQ(normalisedJSON("[]"), "[]");
  EXPECT_EQ(normalisedJSON("{}"), "{}");
  EXPECT_EQ(normalisedJSON(R"([["{","[",":",""],[[]],{"":""}])"), R"([["{","[",":",""],[[]],{"":""}])");
}

TEST(NormalisedJSON, KeepsEveryDigitOfANumber) {
  for (const char* text :
       {"[12345678901234567890123456789]", "[-9223372036854775808,18446744073709551615]", "[0.10,-0,1.0]",
        "[3.14159265358979323846264338327950288]", "[1E5,-0.10e+2,5e-324,1e-400]", R"({"a":9007199254740993,"b":1})"})
    EXPECT_EQ(normalisedJSON(text), text);
}

TEST(NormalisedJSON, WritesTextsInOneWay) {
  EXPECT_EQ(normalisedJSON(R"({"\u0061\/\n":"\u00fc\ud83d\ude00 </script> \u0000\u001F \b\f\r\t \" \\ \u2028"})"),
            "{\"a\\/\\n\":\"ü😀 <\\/script> \\u0000\\u001f \\b\\f\\r\\t \\\" \\\\ \u2028\"}");
  EXPECT_EQ(normalisedJSON("[\"\u2029\x7F'`${x}\"]"), "[\"\u2029\x7F'`${x}\"]");
  EXPECT_EQ(normalisedJSON(R"({"__proto__":{"a":1}})"), R"({"__proto__":{"a":1}})");
}

TEST(NormalisedJSON, TheFirstOfEqualKeysCounts) {
  EXPECT_EQ(normalisedJSON(R"({"a":1,"a":[2,{"a":3}],"b":{"c":1,"c":2},"\u0061":4,"A":5})"),
            R"({"a":1,"b":{"c":1},"A":5})");
  EXPECT_EQ(normalisedJSON(R"([{"a":1},{"a":2}])"), R"([{"a":1},{"a":2}])");
  EXPECT_EQ(normalisedJSON(R"({"__proto__":1,"__proto__":2})"), R"({"__proto__":1})");
}

TEST(NormalisedJSON, ReadsTheEncodingsOfUnicode) {
  const std::string expected = "[\"ü😀\"]";
  EXPECT_EQ(normalisedJSON("\xEF\xBB\xBF[\"ü😀\"]"), expected);
  EXPECT_EQ(normalisedJSON("[\0\"\0\xFC\0\x3D\xD8\x00\xDE\"\0]\0"sv), expected);
  EXPECT_EQ(normalisedJSON("\xFF\xFE[\0\"\0\xFC\0\x3D\xD8\x00\xDE\"\0]\0"sv), expected);
  EXPECT_EQ(normalisedJSON("\0[\0\"\0\xFC\xD8\x3D\xDE\x00\0\"\0]"sv), expected);
  EXPECT_EQ(normalisedJSON("\xFE\xFF\0[\0\"\0\xFC\xD8\x3D\xDE\x00\0\"\0]"sv), expected);
  EXPECT_EQ(normalisedJSON("\0\0\0[\0\0\0\"\0\1\xF6\0\0\0\0\"\0\0\0]"sv), "[\"\U0001F600\"]");
  EXPECT_EQ(normalisedJSON("\xFF\xFE\0\0[\0\0\0]\0\0\0"sv), "[]");
}

TEST(NormalisedJSON, RefusesTheRestAndTellsWhereItBreaks) {
  const struct {
    std::string_view data;
    const char* where;
    const char* reason;
  } cases[]{
      {"", "line 1, column 1", "it is empty"},
      {" \n ", "line 2, column 2", "it is empty"},
      {" 5", "line 1, column 2", "an object or a list must stand at the top"},
      {"\"a\"", "line 1, column 1", "an object or a list must stand at the top"},
      {"{\"a\":1", "line 1, column 7", "it ends too early"},
      {"[\"a", "line 1, column 4", "it ends too early"},
      {"{\"ü\":1,\n  \"b\" 2}", "line 2, column 7", "something that can't stand here"},
      {"[1,]", "line 1, column 4", "something that can't stand here"},
      {"{\"a\":1,}", "line 1, column 8", "something that can't stand here"},
      {"{a:1}", "line 1, column 2", "something that can't stand here"},
      {"['a']", "line 1, column 2", "something that can't stand here"},
      {"[NaN]", "line 1, column 2", "something that can't stand here"},
      {"[-Infinity]", "line 1, column 3", "something that can't stand here"},
      {"[01]", "line 1, column 3", "something that can't stand here"},
      {"[\"a\nb\"]", "line 1, column 4", "something that can't stand here"},
      {"[] // none", "line 1, column 4", "more behind its end"},
      {"{}{}", "line 1, column 3", "more behind its end"},
      {"[1e400]", "line 1, column 7", "a number that is too large"},
      {"[\"\\ud83d\"]", "line 1, column 9", "something that can't stand here"},
      {"[\"\\ude00\"]", "line 1, column 9", "half of a surrogate pair"},
      {"[\"\\uZZZZ\"]", "line 1, column 5", "an escape without its four hexadecimal digits"},
      {"[\"\xFF\"]", "line 1, column 3", "something that can't stand here"},
      {"[\0\"\0\x3D\xD8\"\0]\0"sv, "line 1, column 3", "half of a surrogate pair"},
      {"[\0]\0\0"sv, "line 1, column 3", "bytes that are no text"},
      {"\0\0\0[\0\1\xD8\0\xFF"sv, "line 1, column 3", "bytes that are no text"},
  };
  for (const auto& [data, where, reason] : cases)
    EXPECT_EQ(complaint(data), std::string("The JSON document breaks around ") + where + ": " + reason + ".") << data;
}

TEST(NormalisedJSON, BoundsTheNesting) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_EQ(normalisedJSON(nested(512)), nested(512));
  EXPECT_NE(complaint(nested(513)).find("nested too deeply"), std::string::npos);
  EXPECT_NE(complaint(std::string(1'000'000, '[')).find("nested too deeply"), std::string::npos);
}

} // namespace
} // namespace tabwright::platform
