#include "applescript/ScriptError.h"
#include "scripting/foundation/JSONSerialization.h"
#include "support/ScriptBench.h"

#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace tabwright;
using applescript::Label;
using applescript::Record;
using applescript::Value;
using scripting::jsonText;
using testing::HasSubstr;
using testing::StartsWith;

Value record(std::vector<std::pair<Label, Value>> fields) {
  return Value(std::make_shared<Record>(std::move(fields)));
}

TEST(FoundationJSON, IsLaidOutAsFoundationDoes) {
  const Value value = record({{{0, "b"}, Value::list({1, Value::list({}), record({})})}, {{0, "a"}, "x/y"}});
  EXPECT_EQ(jsonText(value, 5),
            "{\n  \"b\" : [\n    1,\n    [\n\n    ],\n    {\n\n    }\n  ],\n  \"a\" : \"x\\/y\"\n}");
  EXPECT_EQ(jsonText(record({}), 5), "{\n\n}");
  EXPECT_EQ(jsonText(Value::list({}), 5), "[\n\n]");
  EXPECT_EQ(jsonText(value, 0), R"({"b":[1,[],{}],"a":"x\/y"})");
  EXPECT_EQ(jsonText(value, 2 + 8), R"({"a":"x/y","b":[1,[],{}]})");
}

TEST(FoundationJSON, WritesFragmentsOnlyWhenAllowed) {
  EXPECT_EQ(jsonText(Value(true), 5), "true");
  EXPECT_EQ(jsonText(Value("null"), 5), "\"null\"");
  EXPECT_EQ(jsonText(Value::missing(), 5), "null");
  EXPECT_EQ(jsonText(Value(-7), 5), "-7");
  EXPECT_EQ(jsonText(Value(0.5), 5), "0.5");
  EXPECT_EQ(jsonText(Value(2.0), 5), "2");
  EXPECT_EQ(jsonText(Value(1e300), 5), "1e+300");
  EXPECT_EQ(jsonText(Value(100000.0), 5), "100000");
  EXPECT_THROW((void)jsonText(Value(true), 1), applescript::ScriptError);
}

TEST(FoundationJSON, EscapesWhatMustBeAndNothingElse) {
  using namespace std::string_literals;
  EXPECT_EQ(jsonText(Value("\"\\\b\f\n\r\t\x01\x1f\x7f\0é\u2028"s), 4), R"("\"\\\b\f\n\r\t\u0001\u001f)"
                                                                        "\x7f"
                                                                        R"(\u0000é)"
                                                                        "\u2028\"");
  EXPECT_EQ(jsonText(Value("a\xFFz"), 4), "\"a\xEF\xBF\xBDz\"");
}

TEST(FoundationJSON, RefusesWhatJSONCannotSay) {
  const auto errorOf = [](const Value& value) {
    try {
      return jsonText(Value::list({value}), 5);
    } catch (const applescript::ScriptError& error) {
      return std::to_string(error.number()) + " " + error.sentence();
    }
  };
  EXPECT_THAT(errorOf(Value::null()), HasSubstr("-10000 *** +[NSJSONSerialization dataWithJSONObject:options:error:]: "
                                                "Invalid type in JSON write (null)"));
  EXPECT_THAT(errorOf(Value(applescript::Date{0})), HasSubstr("Invalid type in JSON write (__NSTaggedDate)"));
  EXPECT_THAT(errorOf(Value(0.0 / 0.0)), HasSubstr("Invalid number value (NaN) in JSON write"));
}

class Foundation : public testing::Test, protected testsupport::ScriptBench {};

TEST_F(Foundation, WorksOnStrings) {
  const auto of = [&](const std::string& text, const std::string& call) {
    return foundationResult("((CA's NSString's stringWithString:\"" + text + "\")'s " + call + ") as text");
  };
  EXPECT_EQ(of("ÄbC", "lowercaseString()"), R"("äbc")");
  EXPECT_EQ(of("straße", "uppercaseString()"), R"("STRASSE")");
  EXPECT_EQ(of("a😀", "|length|()"), R"("3")");
  EXPECT_EQ(of("a-b-c", "stringByReplacingOccurrencesOfString:\"-\" withString:\"+\""), R"("a+b+c")");
  EXPECT_EQ(
      of("  x y\\n", "stringByTrimmingCharactersInSet:(CA's NSCharacterSet's whitespaceAndNewlineCharacterSet())"),
      R"("x y")");
  EXPECT_EQ(
      foundationResult("((CA's NSString's stringWithString:\"12345:3:\")'s componentsSeparatedByString:\":\") as list"),
      R"({"12345", "3", ""})");
  EXPECT_THAT(of("a", "fly()"), HasSubstr("error -1708"));
}

TEST_F(Foundation, KeepsKeysAndNothingsOfDictionaries) {
  const std::string dictionary =
      "set d to CA's NSMutableDictionary's dictionaryWithDictionary:{Zeta:1, alpha:null, m:\"null\", "
      "inner:{x:missing value}}\n";
  EXPECT_EQ(foundationResult(dictionary + "(d's allKeys()) as list"), R"({"Zeta", "alpha", "m", "inner"})");
  EXPECT_EQ(foundationResult(dictionary +
                             "set v to d's valueForKey:\"alpha\"\nreturn v is not \"null\" and v as text is \"null\""),
            "true");
  EXPECT_EQ(foundationResult(dictionary + "set v to d's valueForKey:\"m\"\nreturn v is not \"null\""), "false");
  EXPECT_EQ(foundationResult(dictionary + "class of (d's valueForKey:\"inner\") is record"), "true");
  EXPECT_EQ(foundationResult(dictionary + "d's setValue:(missing value) forKey:\"alpha\"\nreturn d as record"),
            R"({Zeta:1, alpha:missing value, m:"null", inner:{x:missing value}})");
  EXPECT_EQ(foundationResult(dictionary + "d's removeObjectForKey:\"Zeta\"\nreturn (d's |count|()) as integer"), "3");
  EXPECT_EQ(foundationResult(dictionary + "(d's valueForKey:\"none\") is missing value"), "true");
}

TEST_F(Foundation, DoesNotShareWithTheScript) {
  EXPECT_EQ(
      foundationResult("set r to {a:{1}}\nset d to CA's NSMutableDictionary's dictionaryWithDictionary:r\n"
                       "set end of a of r to 2\nset b to d as record\nset end of a of b to 3\nreturn d as record"),
      "{a:{1}}");
}

TEST_F(Foundation, FindsManyKeys) {
  EXPECT_EQ(foundationResult("set d to CA's NSMutableDictionary's dictionary()\nrepeat with i from 1 to 40\n"
                             "d's setValue:i forKey:(i as text)\nend repeat\nd's removeObjectForKey:\"3\"\n"
                             "d's setValue:\"x\" forKey:\"40\"\n"
                             "return {(d's valueForKey:\"40\") as text, (d's valueForKey:\"3\") is missing value, "
                             "(d's |count|()) as integer}"),
            R"({"x", true, 39})");
}

TEST_F(Foundation, OfKeysThatDifferInCaseOnlyARecordKeepsTheLast) {
  for (const std::string others : {"0", "40"}) {
    EXPECT_EQ(foundationResult("set d to CA's NSMutableDictionary's dictionaryWithDictionary:{alpha:1}\n"
                               "repeat with i from 1 to " +
                               others +
                               "\nd's setValue:i forKey:(\"k\" & i)\nend repeat\n"
                               "d's setValue:2 forKey:\"ALPHA\"\nset r to d as record\n"
                               "return {alpha of r, count of r, (d's |count|()) as integer}"),
              fmt::format("{{2, {}, {}}}", 1 + std::stoi(others), 2 + std::stoi(others)));
  }
}

TEST_F(Foundation, ReadsBackTheJSONThatItWrote) {
  EXPECT_EQ(foundationResult(
                "set j to CA's NSJSONSerialization's dataWithJSONObject:{a:{1, 0.5, true, missing value}, b:\"x\"} "
                "options:0 |error|:(missing value)\n"
                "set o to CA's NSJSONSerialization's JSONObjectWithData:j options:0 |error|:(missing value)\nreturn o "
                "as record"),
            R"({a:{1, 0.5, true, missing value}, b:"x"})");
  EXPECT_EQ(foundationResult(
                "set j to (CA's NSString's stringWithString:\"{\")'s dataUsingEncoding:(CA's NSUTF8StringEncoding)\n"
                "return (CA's NSJSONSerialization's JSONObjectWithData:j options:4 |error|:(missing value)) is missing "
                "value"),
            "true");
}

TEST_F(Foundation, RefusesWhatIsNoNumberAndEndsWhatWouldHoldItself) {
  EXPECT_THAT(foundationResult("(CA's NSNumber's numberWithInteger:\"x\")'s boolValue()"), StartsWith("error -10000"));
  EXPECT_EQ(foundationResult("set a to CA's NSMutableArray's arrayWithArray:{1}\na's addObject:a\na as list"),
            "{1, {1}}");
}

TEST_F(Foundation, WorksOnArraysAndDates) {
  EXPECT_EQ(foundationResult("set a to CA's NSMutableArray's arrayWithArray:{1, \"b\"}\na's addObject:3\n"
                             "return {(a's componentsJoinedByString:\"-\") as text, (a's objectAtIndex:1) as text}"),
            R"({"1-b-3", "b"})");
  EXPECT_EQ(foundationResult("set a to CA's NSArray's array()\na's addObject:1").substr(0, 11), "error -1708");
  EXPECT_EQ(foundationResult("(CA's NSDate's |date|())'s timeIntervalSince1970() as integer"), "1700000000");
  EXPECT_EQ(foundationResult("(CA's NSDate's |date|())'s timeIntervalSinceReferenceDate() as integer"), "721692800");
}

} // namespace
