#include "actions/ActionFrame.h"
#include "actions/enums/PauseOption.h"
#include "browserdata/BrowserTabEntity.h"
#include "support/ActionBench.h"
#include "support/FailureText.h"

#include <boost/asio/error.hpp>
#include <boost/system/system_error.hpp>
#include <gtest/gtest.h>

namespace tabwright::actions {
namespace {

using Steps = std::vector<std::string>;
using testsupport::failureText;

// An action that does nothing but say when its own steps happen.
class Probe final : public ActionFrame {
public:
  using ActionFrame::Registration;

  explicit Probe(testsupport::ActionBench& bench, Registration moment = Registration::afterPreconditions)
      : ActionFrame(bench.services, "Probe", "Intents-Demo", {}), bench_(bench) {
    registerRuns(moment);
    requireText(text);
    require([this] { bench_.steps.emplace_back("precondition"); });
    pauseAfterSuccess(pause);
    summarise({{.sentence = {&text}}});
  }
  intents::ValueType resultType() const override { return intents::ValueTraits<std::string>::type(); }

  Parameter<std::string> text{*this, {.name = "text"}};
  Parameter<PauseOption> pause{*this, {.name = "pause", .defaultValue = PauseOption::p00}};

private:
  platform::Task<void> prepare(intents::ActionHost&) override {
    bench_.steps.emplace_back("prepare");
    co_return;
  }
  platform::Task<Outcome> run(intents::ActionHost&) override {
    bench_.steps.emplace_back("work");
    co_return Outcome{.value = boost::json::value(*text), .success = Outcome::Success::yes};
  }

  testsupport::ActionBench& bench_;
};

class Frame : public testing::Test {
protected:
  boost::json::value perform(Probe& probe) { return testsupport::runTask(probe.perform(bench.actionHost)); }

  testsupport::ActionBench bench;
};

TEST_F(Frame, TakesTheStepsInOrder) {
  Probe probe(bench);
  probe.text.set(" t ");
  probe.pause.set(PauseOption::p25);
  EXPECT_EQ(perform(probe), " t ") << "the text is used untrimmed";
  EXPECT_EQ(bench.steps, (Steps{"precondition", "prepare", "schedule", "count", "work", "sleep 2.5"}));
}

TEST_F(Frame, AsksForABlankTextBeforeAnythingHappens) {
  for (const char* blank : {"", " \n\t", "\u00A0\u2028"}) {
    Probe probe(bench);
    probe.text.set(blank);
    EXPECT_THROW(perform(probe), intents::NeedsValue);
  }
  Probe probe(bench);
  EXPECT_THROW(perform(probe), intents::NeedsValue);
  EXPECT_EQ(bench.steps, Steps{});
}

TEST_F(Frame, RegistersFirstOrNotAtAllWhenTheActionSaysSo) {
  Probe first(bench, Probe::Registration::beforePreconditions);
  EXPECT_THROW(perform(first), intents::NeedsValue);
  EXPECT_EQ(bench.steps, (Steps{"schedule", "count"}));

  bench.steps.clear();
  Probe inside(bench, Probe::Registration::insideRun);
  inside.text.set("t");
  perform(inside);
  EXPECT_EQ(bench.steps, (Steps{"precondition", "prepare", "work"}));
}

TEST_F(Frame, ReturnsItsValueWhenThePauseIsCutShort) {
  bench.onSleep = [] { throw boost::system::system_error(boost::asio::error::operation_aborted); };
  Probe probe(bench);
  probe.text.set("t");
  probe.pause.set(PauseOption::p10);
  EXPECT_EQ(perform(probe), "t");
}

TEST_F(Frame, RunsUncountedWithoutACounter) {
  bench.services.callCounter = nullptr;
  Probe probe(bench);
  probe.text.set("t");
  perform(probe);
  EXPECT_EQ(bench.steps, (Steps{"precondition", "prepare", "schedule", "work"}));
}

TEST_F(Frame, HasNoScriptToShowByItself) {
  Probe probe(bench);
  probe.text.set("t");
  EXPECT_EQ(failureText([&] { return probe.scriptText(); }), "Probe runs no script.");
}

} // namespace
} // namespace tabwright::actions
