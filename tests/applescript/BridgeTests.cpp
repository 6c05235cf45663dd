// Foreign objects: what the bridge is sent, and what the language sees of what comes back.
#include "EmptyDirectory.h"
#include "applescript/Interpreter.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::applescript {
namespace {

using testing::ElementsAre;

/// Holds a value; answers `stringWithString:` and `echo:` with a box of what it is given.
class Box final : public ForeignObject {
public:
  Box(std::optional<Value> value, std::vector<std::string>& log) : value_(std::move(value)), log_(log) {}

  Value send(std::string_view selector, const std::vector<Value>& arguments) override {
    std::string line(selector);
    for (const Value& argument : arguments)
      line += " " + sourceForm(argument);
    log_.push_back(line);
    if (selector == "stringWithString:" || selector == "echo:")
      return box(plainValue(arguments.at(0)));
    throw errors::notUnderstood(description(), selector);
  }
  [[nodiscard]] std::optional<Value> unwrapped() const override { return value_; }
  [[nodiscard]] std::string description() const override { return "«class ocid» box"; }

private:
  Value box(Value value) { return Value::ForeignPointer(std::make_shared<Box>(std::move(value), log_)); }
  std::optional<Value> value_;
  std::vector<std::string>& log_;
};

class BridgeTests : public testing::Test, public ObjectiveCBridge {
protected:
  BridgeTests() {
    surroundings.directory = &directory;
    surroundings.objectiveC = this;
  }
  [[nodiscard]] std::optional<Value> named(std::string_view name) const override {
    ++lookups;
    if (name == "NSUTF8StringEncoding")
      return Value(4);
    if (name == "NSThing")
      return Value(Value::ForeignPointer(std::make_shared<Box>(std::nullopt, log)));
    return {};
  }
  std::string run(const std::string& source) {
    Interpreter interpreter(surroundings);
    const auto script = interpreter.compile("property CA : a reference to current application\n"
                                            "property NSThing : a reference to CA's NSThing\n" +
                                            source);
    try {
      return sourceForm(interpreter.run(*script));
    } catch (const ScriptError& error) {
      return "error " + std::to_string(error.number()) + " " + error.message();
    }
  }

  EmptyDirectory directory;
  Surroundings surroundings;
  mutable std::vector<std::string> log;
  mutable int lookups = 0;
};

TEST_F(BridgeTests, ClassesAreLookedUpOnceAndOnlyWhenNeeded) {
  EXPECT_EQ(run("property Gone : a reference to CA's NSGone\n1"), "1");
  EXPECT_EQ(lookups, 0);
  EXPECT_EQ(run("repeat 5 times\nset s to (NSThing's stringWithString:\"x\") as text\nend repeat\ns"), "\"x\"");
  EXPECT_EQ(lookups, 1);
  EXPECT_EQ(run("property Gone : a reference to CA's NSGone\nGone's alloc()"),
            "error -1728 Can’t get NSGone of current application.");
  EXPECT_EQ(run("set app_ to current application\nNSUTF8StringEncoding of app_"), "4");
}

TEST_F(BridgeTests, SelectorsAndArgumentsGoAsWritten) {
  run("set o to NSThing's echo:{1, missing value}\nrepeat with e in {\"k\"}\n"
      "set o to NSThing's stringWithString:e\nend repeat\ntry\no's initWithData:1 encoding:2\nend try\n"
      "try\no's alloc()\nend try\ntry\no's add_to_(1, 2)\nend try");
  EXPECT_THAT(log, ElementsAre("echo: {1, missing value}", "stringWithString: \"k\"", "initWithData:encoding: 1 2",
                               "alloc", "add:to: 1 2"));
}

TEST_F(BridgeTests, OpaqueObjectsAreSeenAsWhatTheyCoerceTo) {
  EXPECT_EQ(run("set o to NSThing's echo:{1, \"b\"}\nset t to NSThing's echo:\"null\"\nset n to NSThing's echo:5\n"
                "{class of o is list, class of t is text, o as list, count of o, item 2 of o, t is \"null\", "
                "t is null, t as text, n + 1, n is 5, \"a\" & t, o contains \"b\"}"),
            "{true, true, {1, \"b\"}, 2, \"b\", true, false, \"null\", 6, true, \"anull\", true}");
  EXPECT_EQ(run("set r to {}\nrepeat with e in (NSThing's echo:{1, 2})\nset end of r to e + 1\nend repeat\nr"),
            "{2, 3}");
  EXPECT_EQ(run("class of (NSThing's alloc())").substr(0, 11), "error -1708");
  EXPECT_EQ(run("(NSThing's echo:{a:1}) as text"), "error -1700 Can’t make {a:1} into type text.");
}

} // namespace
} // namespace tabwright::applescript
