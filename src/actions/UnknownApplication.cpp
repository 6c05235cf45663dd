#include "actions/UnknownApplication.h"

#include "engine/errors/AxeError.h"
#include "platform/DesktopFault.h"

#include <fmt/core.h>
#include <fmt/ranges.h>

#include <vector>

namespace tabwright::actions {
namespace {

constexpr std::size_t mostNamed = 12;

} // namespace

platform::Notice unknownApplication(const std::string& id, const automation::DesktopServices& desktop) {
  try {
    // Without windows in sight no application can be found, and that is what the user should hear.
    static_cast<void>(desktop.windows.windows());
  } catch (const platform::DesktopFailure& failure) {
    return platform::asCause(failure);
  }
  const targets::TargetContextManager& targets = desktop.targets;
  std::vector<std::string> running;
  for (const auto& applications : {targets.runningBrowsers(), targets.otherApplications()}) {
    for (const engine::TargetContext& each : applications)
      running.push_back(each.id);
  }
  if (running.size() > mostNamed)
    running.resize(mostNamed);
  return {engine::identity(engine::AxeError::appCouldNotBeActivated),
          running.empty()
              ? fmt::format("“{}” neither runs nor could be started, and no other application shows a window.", id)
              : fmt::format("“{}” neither runs nor could be started. These run: {}.", id, fmt::join(running, ", "))};
}

} // namespace tabwright::actions
