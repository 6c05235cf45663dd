// Warm actions against a browser that runs already ("tabwright browser chromium --headless"): the time of each, and
// what went over the wire for it. Usage: tabwright_browser_bench [RUNS]
#include "app/Composition.h"
#include "app/Interruptible.h"
#include "app/TerminalHost.h"
#include "host/Perform.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stop_token>
#include <string>
#include <vector>

namespace tabwright {
namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration duration) {
  return std::chrono::duration<double, std::milli>(duration).count();
}

double residentMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:"))
      return std::strtod(line.c_str() + 6, nullptr) / 1024;
  }
  return 0;
}

void performOnce(const app::Composition& composition, const std::string& name, const host::ParameterTexts& parameters) {
  app::TerminalHost terminal;
  const auto work = [&]() -> platform::Task<void> {
    co_await host::perform(composition.catalogue(), name, parameters, terminal);
  };
  app::runInterruptibly(work());
}

void measure(app::Composition& composition, const std::string& name, const host::ParameterTexts& parameters, int runs) {
  const auto driver = composition.driver(*platform::findBrowser("chromium"));
  performOnce(composition, name, parameters); // connects, loads the helper, attaches
  std::vector<double> times;
  const devtools::Traffic before = driver->traffic();
  for (int run = 0; run < runs; ++run) {
    const Clock::time_point start = Clock::now();
    performOnce(composition, name, parameters);
    times.push_back(milliseconds(Clock::now() - start));
  }
  const devtools::Traffic after = driver->traffic();
  std::ranges::sort(times);
  std::printf("%-16s %4d runs: median %.2f ms, best %.2f, worst %.2f; per run %.1f messages sent, %.1f received\n",
              name.c_str(), runs, times[times.size() / 2], times.front(), times.back(),
              static_cast<double>(after.sent - before.sent) / runs,
              static_cast<double>(after.received - before.received) / runs);
}

} // namespace
} // namespace tabwright

int main(int argumentCount, char** arguments) {
  using namespace tabwright;
  const int runs = argumentCount > 1 ? std::atoi(arguments[1]) : 200;
  try {
    app::Composition composition;
    measure(composition, "ClickElement", {{"targetContext", "chromium"}, {"cssSelector", "#switch"}}, runs);
    measure(composition, "RunJavascriptInTab", {{"targetContext", "chromium"}, {"jsCode", "return document.title"}},
            runs);
    measure(composition, "GetListOfTabs", {{"targetContext", "chromium"}}, runs);

    const auto driver = composition.driver(*platform::findBrowser("chromium"));
    const auto snapshot = driver->snapshot({});
    const auto tab = snapshot->windows.at(0).tabs.at(0).id;
    const std::stop_source run; // one and the same, which waits for nothing that it has not set going itself
    const Clock::time_point start = Clock::now();
    for (int time = 0; time < runs; ++time)
      static_cast<void>(driver->evaluate(tab, "1 + 1", {.stop = run.get_token()}));
    std::printf("one evaluation alone: %.2f ms\n", milliseconds(Clock::now() - start) / runs);
    std::printf("resident memory: %.1f MB\n", residentMegabytes());
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
