// Parsing and running one generated program, over a browser in memory: the interpreter's own share of an action.
#include "app/Composition.h"
#include "host/Perform.h"
#include "scripting/ScriptingDirectory.h"
#include "scripting/foundation/FoundationBridge.h"
#include "support/ModelBrowser.h"
#include "support/ModelDesktop.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace tabwright {
namespace {

std::string programOf(const std::string& action, const host::ParameterTexts& parameters) {
  const app::Composition composition;
  return host::scriptText(composition.catalogue(), action, parameters);
}

std::string listProgram() {
  return programOf("GetListOfTabs", {{"targetContext", "chromium"}});
}
std::string clickProgram() {
  return programOf("ClickElement", {{"targetContext", "chromium"}, {"cssSelector", "#switch"}});
}

/// A world with one browser of so many tabs, whose page jobs have answers at once.
struct World {
  explicit World(int tabs) {
    std::vector<testsupport::ModelBrowser::Page> pages;
    for (int tab = 0; tab < tabs; ++tab)
      pages.push_back({"Title " + std::to_string(tab), "https://example.test/" + std::to_string(tab)});
    browser->addWindow(pages);
    browser->page = [](scripting::TabID, const std::string& js) -> boost::json::value {
      if (js.starts_with("'' + window."))
        return "alive";
      if (js.ends_with("|| -1"))
        return boost::json::array{"true"};
      return "156";
    };
  }

  std::shared_ptr<testsupport::ModelBrowser> browser = std::make_shared<testsupport::ModelBrowser>();
  scripting::ScriptingDirectory directory{
      {.makeDriver = [this](const platform::BrowserFacts&, const std::string&) { return browser; },
       .launch = {},
       .desktop = std::make_shared<testsupport::ModelDesktop>(),
       .activateSelf = {}}};
  scripting::FoundationBridge bridge;
  applescript::Interpreter interpreter{{.directory = &directory,
                                        .objectiveC = &bridge,
                                        .sleep = [](std::chrono::nanoseconds, std::stop_token) {},
                                        .now = {},
                                        .random = {},
                                        .log = {}}};
};

void parseProgram(benchmark::State& state) {
  World world(1);
  const std::string program = clickProgram();
  for (auto _ : state)
    benchmark::DoNotOptimize(world.interpreter.compile(program));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * program.size()));
}
BENCHMARK(parseProgram)->Unit(benchmark::kMicrosecond);

void runProgram(benchmark::State& state, const std::string& program, int tabs) {
  World world(tabs);
  for (auto _ : state) {
    const applescript::CompiledScript script = world.interpreter.compile(program);
    benchmark::DoNotOptimize(world.interpreter.call(*script, "runWithVariables"));
  }
  const auto runs = static_cast<double>(state.iterations());
  state.counters["snapshots"] = world.browser->snapshotsTaken / runs;
  state.counters["evaluations"] = world.browser->evaluations / runs;
}

void clickElement(benchmark::State& state) {
  runProgram(state, clickProgram(), 3);
}
BENCHMARK(clickElement)->Unit(benchmark::kMicrosecond);

void listOfTabs(benchmark::State& state) {
  runProgram(state, listProgram(), static_cast<int>(state.range(0)));
}
BENCHMARK(listOfTabs)->Arg(3)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

// The rate must not depend on the number of items: the cost is linear.
void numbersAsResult(benchmark::State& state) {
  runProgram(state,
             programOf("RunAppleScript", {{"targetContext", "chromium"},
                                          {"script", "repeat with i from 1 to " + std::to_string(state.range(0)) +
                                                         "\nset end of RETURN_VALUE to i\nend repeat"}}),
             1);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(numbersAsResult)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void textItems(benchmark::State& state) {
  World world(1);
  const auto script = world.interpreter.compile("on split(t)\nset AppleScript's text item delimiters to linefeed\n"
                                                "return count of (text items of t)\nend split");
  std::string text;
  for (std::int64_t line = 0; line < state.range(0); ++line)
    text += "zeile " + std::to_string(line) + (state.range(1) != 0 ? " ä\n" : "\n");
  for (auto _ : state)
    benchmark::DoNotOptimize(world.interpreter.call(*script, "split", {text}));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(textItems)->ArgsProduct({{1000, 10000, 100000}, {0, 1}})->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tabwright
