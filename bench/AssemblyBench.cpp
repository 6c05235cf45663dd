// Times the writing of one action's program, from its parameters to the finished text.
#include "app/Composition.h"
#include "host/Perform.h"

#include <benchmark/benchmark.h>

namespace tabwright {
namespace {

void assembleClickElement(benchmark::State& state) {
  const app::Composition composition;
  const host::ParameterValues parameters =
      host::ParameterTexts{{"targetContext", "chromium"}, {"cssSelector", "#switch"}};
  std::size_t bytes = 0;
  for (auto _ : state)
    bytes = host::scriptText(composition.catalogue(), "ClickElement", parameters).size();
  state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(assembleClickElement)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tabwright
