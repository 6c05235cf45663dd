#pragma once

#include "host/workflow/Workflow.h"

#include <string>

namespace tabwright::host::workflow {

/// The kind of the step: its action's name, or "repeat", "if", "try", "set", "append", "print".
[[nodiscard]] std::string kindOf(const Step& step);

/// The work of the step with the values as they are: `ClickElement cssSelector: #send`, `repeat for each tab in
/// ${tabs}`. Values that aren't known yet stay as the file has them, and so does all of a value that can't be gone
/// into: this never throws. The step's own title stands in front. May be long, and have more than one line.
[[nodiscard]] std::string describe(const Step& step, const Variables& variables);

/// All steps, one a line with the number of its line in the file, those inside of others indented: what would run.
/// `variables` are those that the run would begin with.
[[nodiscard]] std::string outline(const Workflow& workflow, const Variables& variables);

} // namespace tabwright::host::workflow
