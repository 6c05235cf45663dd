#include "devtools/DevToolsFault.h"

#include <fmt/core.h>

namespace tabwright::devtools {

std::string errorDescription(DevToolsFault fault, const std::string& detail) {
  switch (fault) {
  case DevToolsFault::unreachable:
    return fmt::format("The browser could not be reached: {}.", detail);
  case DevToolsFault::lost:
    return fmt::format("The connection to the browser was lost: {}.", detail);
  case DevToolsFault::notAnswering:
    return fmt::format("The browser has answered nothing at all for {}.", detail);
  case DevToolsFault::refused:
    return fmt::format("The browser refused: {}.", detail);
  case DevToolsFault::timedOut:
    return fmt::format("The browser did not answer in time: {}.", detail);
  case DevToolsFault::stopped:
    return "Waiting for the browser was stopped.";
  case DevToolsFault::targetGone:
    return "The page was closed.";
  case DevToolsFault::targetCrashed:
    return "The page has crashed.";
  case DevToolsFault::dialogOpen:
    return fmt::format("The page shows a dialog: “{}”.", detail);
  }
  return "The browser failed.";
}

platform::FailureIdentity identity(DevToolsFault fault) {
  const auto name = [fault] {
    switch (fault) {
    case DevToolsFault::unreachable:
      return "unreachable";
    case DevToolsFault::lost:
      return "lost";
    case DevToolsFault::notAnswering:
      return "notAnswering";
    case DevToolsFault::refused:
      return "refused";
    case DevToolsFault::timedOut:
      return "timedOut";
    case DevToolsFault::stopped:
      return "stopped";
    case DevToolsFault::targetGone:
      return "targetGone";
    case DevToolsFault::targetCrashed:
      return "targetCrashed";
    case DevToolsFault::dialogOpen:
      return "dialogOpen";
    }
    return "";
  };
  return {"DevToolsFault", name(), std::nullopt};
}

} // namespace tabwright::devtools
