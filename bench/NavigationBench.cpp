// Navigations of every kind, each followed at once by a read, against a browser that runs already: how many reads met
// the page from before, one that was not there to its end, or an error; and how long both took. Usage:
// tabwright_navigation_bench [TIMES [BUSY [KIND]]], where BUSY threads keep as many cores from the browser.
#include "app/Composition.h"
#include "app/Interruptible.h"
#include "app/TerminalHost.h"
#include "host/Perform.h"
#include "support/NavigationKinds.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace tabwright {
namespace {

using Clock = std::chrono::steady_clock;
using support::NavigationKinds;

int measure(const NavigationKinds& kinds, const support::NavigationKind& kind, int times,
            const support::PerformAction& perform) {
  int stale = 0;
  int partial = 0;
  int failed = 0;
  std::string failure;
  const Clock::time_point start = Clock::now();
  for (int time = 0; time < times; ++time) {
    const auto first = time % 2 == 0 ? NavigationKinds::Reads::page : NavigationKinds::Reads::listOfTabs;
    const NavigationKinds::Outcome outcome = kinds.navigateAndRead(kind, first, perform);
    stale += outcome.isStale ? 1 : 0;
    partial += outcome.isPartial ? 1 : 0;
    failed += outcome.failure.empty() ? 0 : 1;
    if (!outcome.failure.empty())
      failure = outcome.failure;
  }
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  std::printf("%-26s %5d times: %d stale, %d partial, %d failed; %.1f ms each %s\n", kind.name.c_str(), times, stale,
              partial, failed, seconds * 1000 / times, failure.c_str());
  std::fflush(stdout);
  return stale + partial + failed;
}

} // namespace
} // namespace tabwright

int main(int argumentCount, char** arguments) {
  using namespace tabwright;
  const int times = argumentCount > 1 ? std::atoi(arguments[1]) : 20;
  const int busy = argumentCount > 2 ? std::atoi(arguments[2]) : 0;
  const std::string only = argumentCount > 3 ? arguments[3] : "";
  try {
    std::vector<std::jthread> spinning;
    for (int thread = 0; thread < busy; ++thread) {
      spinning.emplace_back([](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
        }
      });
    }
    app::Composition composition;
    const support::PerformAction perform = [&](const std::string& action, host::ParameterTexts parameters) {
      parameters.emplace_back("targetContext", "chromium");
      app::TerminalHost terminal;
      boost::json::value value;
      const auto work = [&]() -> platform::Task<void> {
        value = (co_await host::perform(composition.catalogue(), action, parameters, terminal)).value;
      };
      app::runInterruptibly(work());
      return value;
    };
    const support::NavigationKinds kinds;
    kinds.prepare(perform);
    int wrong = 0;
    for (const support::NavigationKind& kind : kinds.all()) {
      if (only.empty() || kind.name == only)
        wrong += measure(kinds, kind, times, perform);
    }
    return wrong == 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
