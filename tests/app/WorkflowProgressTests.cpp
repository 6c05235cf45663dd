#include "app/WorkflowProgress.h"
#include "host/workflow/WorkflowReader.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

#include <sstream>
#include <variant>

namespace tabwright::app {
namespace {

namespace workflow = host::workflow;

TEST(WorkflowProgress, IsALinePerStepThatFitsTheTerminal) {
  testsupport::ManualClock clock;
  std::ostringstream terminal;
  std::ostringstream output;
  const workflow::Workflow steps = workflow::readWorkflow(R"(steps:
  - action: ClickElement
    parameters: {cssSelector: "#a-very-long-selector-that-does-not-fit", targetTab: "${tab}"}
  - try:
      - repeat: [1]
        as: x
        steps: []
)");
  const workflow::Step& click = steps.steps[0];
  const workflow::Step& attempt = steps.steps[1];
  const workflow::Step& repeat = std::get<workflow::TryStep>(attempt.work).steps[0];
  {
    WorkflowProgress progress(terminal, 50, output, clock);
    progress.showTitle("");
    progress.showTitle("A title\nthat does not fit the fifty cells of the terminal");
    progress.stepBegins(click, {}, 0);
    clock.now += 1.5;
    progress.stepEnds(click, "");
    progress.stepBegins(attempt, {}, 0);
    progress.stepBegins(repeat, {}, 1);
    progress.roundBegins(repeat, 1, 1, 1);
    progress.printed("on standard output");
    progress.stepEnds(repeat, "");
    progress.stepEnds(attempt, "");
    progress.stepBegins(click, {}, 0);
    progress.stepEnds(click, "It failed");
    progress.stepBegins(click, {}, 0); // and is interrupted
  }
  EXPECT_EQ(terminal.str(), R"(A title that does not fit the fifty cells of the …
   2  ClickElement cssSelector: #a-ve… … 1.50 s
   4  try
   5    repeat 1 of 1
   2  ClickElement cssSelector: #a-ve… … failed
   2  ClickElement cssSelector: #a-ve… … 
)");
  EXPECT_EQ(output.str(), "on standard output\n");
}

} // namespace
} // namespace tabwright::app
