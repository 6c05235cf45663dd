// A navigation of ours counts until it is there: whatever an action has set going, the next one meets what came of it.
#include "RealRoad.h"
#include "support/NavigationKinds.h"
#include "support/PageServer.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <thread>

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
    // No helper gets into a page of the browser's own, so nothing of it can be read.
    if (isHelperRoad() && kind.leads == support::NavigationKind::Leads::toAnErrorPage)
      continue;
    for (const auto first : {support::NavigationKinds::Reads::page, support::NavigationKinds::Reads::listOfTabs}) {
      const support::NavigationKinds::Outcome outcome = kinds.navigateAndRead(kind, first, run);
      EXPECT_FALSE(outcome.isStale) << kind.name << ": not the page that it led to";
      EXPECT_FALSE(outcome.isPartial) << kind.name << ": a page that was not there yet";
      EXPECT_EQ(outcome.failure, "") << kind.name;
    }
  }
}

TEST_F(NavigationRoad, AJobWhosePageDoesNotComeIsHeldUntilOneDoes) {
  support::PageServer pages;
  pages.neverAnswer("/never");
  pages.serve("/late", "<title>late</title><p id=late>x");
  const TabID tab = snapshot()->windows.front().tabs.front().id;
  driver().perform(Navigate{tab, pages.url("/never")}, limits());
  std::jthread comesLate([&] {
    std::this_thread::sleep_for(std::chrono::seconds(11)); // a second after nobody waits for the first page any longer
    driver().perform(Navigate{tab, pages.url("/late")}, limits());
  });
  const host::ParameterTexts parameters{{"targetContext", "chromium"},
                                        {"cssSelector", "#late"},
                                        {"timeout", "12"},
                                        {"targetTab", "chromium:" + std::to_string(tab)}};
  EXPECT_EQ(testsupport::runTask(host::perform(catalogue(), "WaitForElement", parameters, nobody())).value,
            boost::json::value(true));
  EXPECT_THAT(noticed(), testing::Contains("notCome"));
}

} // namespace
} // namespace tabwright::scripting
