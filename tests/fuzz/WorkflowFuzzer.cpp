// Any bytes as a workflow's file: it is read, or what is wrong with it lies within it. What is read has an outline.
#include "host/workflow/StepWords.h"
#include "host/workflow/WorkflowReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace workflow = tabwright::host::workflow;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  try {
    const workflow::Workflow read = workflow::readWorkflow(source);
    if (workflow::outline(read, {}).empty())
      std::abort();
  } catch (const workflow::InvalidWorkflow& invalid) {
    if (invalid.problems().empty() || invalid.errorDescription().empty())
      std::abort();
  }
  return 0;
}
