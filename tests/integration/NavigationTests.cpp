// A navigation of ours counts until it is there: whatever an action has set going, the next one meets what came of it.
#include "RealRoad.h"
#include "support/NavigationKinds.h"

namespace tabwright::scripting {
namespace {

class NavigationRoad : public RealRoad {};

TEST_F(NavigationRoad, TheNextActionBeginsWithThePageThatTheLastOneLedTo) {
  const support::NavigationKinds kinds;
  const host::Catalogue& actions = catalogue();
  const support::PerformAction run = [&](const std::string& action, host::ParameterTexts parameters) {
    parameters.emplace_back("targetContext", "chromium");
    return testsupport::runTask(host::perform(actions, action, parameters, nobody())).value;
  };
  kinds.prepare(run);
  for (const support::NavigationKind& kind : kinds.all()) {
    for (const auto first : {support::NavigationKinds::Reads::page, support::NavigationKinds::Reads::listOfTabs}) {
      const support::NavigationKinds::Outcome outcome = kinds.navigateAndRead(kind, first, run);
      EXPECT_FALSE(outcome.isStale) << kind.name << ": not the page that it led to";
      EXPECT_FALSE(outcome.isPartial) << kind.name << ": a page that was not there yet";
      EXPECT_EQ(outcome.failure, "") << kind.name;
    }
  }
}

} // namespace
} // namespace tabwright::scripting
