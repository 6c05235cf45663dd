#include "browserdata/BrowserTabEntity.h"
#include "host/Perform.h"
#include "intents/NeedsValue.h"
#include "intents/UsageError.h"
#include "support/ActionBench.h"

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

namespace tabwright::host {
namespace {

class Perform : public testing::Test {
protected:
  ActionResult perform(const char* name, ParameterValues parameters) {
    return testsupport::runTask(host::perform(bench.catalogue, name, std::move(parameters), bench.actionHost));
  }

  testsupport::ActionBench bench;
};

TEST_F(Perform, WrongUseTouchesNothing) {
  EXPECT_THROW(perform("Click", ParameterTexts{}), intents::UsageError);
  EXPECT_THROW(perform("ClickElement", ParameterTexts{{"x", "y"}}), intents::UsageError);
  EXPECT_THROW(perform("ClickElement", ParameterTexts{}), intents::NeedsValue);
  EXPECT_TRUE(bench.steps.empty());
}

TEST(LinesOf, ShowsEachKindOfValue) {
  using intents::ValueTraits;
  const auto lines = [](const intents::ValueType& type, const char* json) {
    return linesOf({boost::json::parse(json), type});
  };
  using Lines = std::vector<std::string>;
  EXPECT_EQ(lines(ValueTraits<std::string>::type(), R"("a\nb")"), Lines{"a\nb"});
  EXPECT_EQ(lines(ValueTraits<bool>::type(), "false"), Lines{"false"});
  EXPECT_EQ(lines(ValueTraits<std::int64_t>::type(), "42"), Lines{"42"});
  EXPECT_EQ(lines(ValueTraits<std::vector<std::string>>::type(), R"(["a","",""])"), (Lines{"a", "", ""}));
  EXPECT_EQ(lines(ValueTraits<std::vector<std::string>>::type(), "[]"), Lines{});
  EXPECT_EQ(lines(ValueTraits<std::optional<browserdata::BrowserTabEntity>>::type(), "null"), Lines{});
  EXPECT_EQ(lines(ValueTraits<engine::TargetContext>::type(), R"({"id":"com.apple.safari","name":"Safari"})"),
            Lines{"Safari"});
}

} // namespace
} // namespace tabwright::host
