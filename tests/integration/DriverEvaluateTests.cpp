#include "integration/DriverFixture.h"

#include <boost/json/parse.hpp>

namespace tabwright::scripting {

TEST_F(DriverTest, ValuesComeAsJson) {
  const TabID tab = open(page("<title>Värde</title>"));
  struct Case {
    const char* javascript;
    const char* json;
  };
  const Case cases[] = {
      {"1 + 1", "2"},
      {"1.5", "1.5E0"},
      {"-0", "0"},
      {"2 ** 53", "9007199254740992"},
      {"NaN", "null"},
      {"1 / 0", "null"},
      {"12n", "null"},
      {"true", "true"},
      {"null", "null"},
      {"undefined", "null"},
      {"''", "\"\""},
      {"document.title", "\"Värde\""},
      {"'a\\nb\\u0000'", "\"a\\nb\\u0000\""},
      {"'\\u{1F600}é'", "\"\U0001F600é\""},
      {"'\\u{1F600}'.slice(0, 1) + 'x'", "\"\uFFFDx\""}, // half an emoji
      {"[1, 'two', [null, undefined], NaN]", "[1,\"two\",[null,null],null]"},
      {"({b: 1, a: {c: [true]}})", "{\"b\":1,\"a\":{\"c\":[true]}}"},
      {"(() => 1)", "null"},
      {"Symbol()", "null"},
      {"const o = {}; o.o = o; o", "null"},
      {"throw new Error('no')", "null"},
      {"no syntax", "null"},
      {"Promise.resolve({a: 1})", "{\"a\":1}"},
      {"new Promise(done => setTimeout(() => done('late'), 20))", "\"late\""},
      {"Promise.reject(1)", "null"},
      {"let a = 1; a + 1", "2"},
  };
  for (const Case& each : cases) {
    // The helper's browser leaves out the property that leads back.
    if (isHelperRoad() && std::string_view(each.javascript).ends_with("o.o = o; o"))
      continue;
    // Of the order of an object's properties nothing is said.
    EXPECT_EQ(evaluate(tab, each.javascript), boost::json::parse(each.json)) << each.javascript;
  }
}

TEST_F(DriverTest, LongTextsComeWholeAndDeepValuesDoNotBreakTheConnection) {
  const TabID tab = open(page("x"));
  const boost::json::value text = evaluate(tab, "'\\u{1F600}abc'.repeat(1000000)");
  ASSERT_TRUE(text.is_string());
  EXPECT_EQ(text.get_string().size(), 7U * 1000000U);
  EXPECT_TRUE(text.get_string().ends_with("\U0001F600abc"));

  evaluate(tab, "window.deep = n => { let o = 1; while (n--) o = [o]; return o }");
  EXPECT_TRUE(evaluate(tab, "deep(200)").is_array());
  // The helper's browser cuts it off further down.
  EXPECT_TRUE(evaluate(tab, "deep(5000)").is_null() || isHelperRoad());
  EXPECT_EQ(evaluate(tab, "'still ' + 'here'"), "still here");

  // Long code goes the other way.
  EXPECT_EQ(evaluate(tab, "'" + std::string(5'000'000, 'y') + "'.length"), 5'000'000);
}

} // namespace tabwright::scripting
