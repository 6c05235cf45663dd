#include "scripting/driver/PageJobs.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::scripting {

namespace {

constexpr std::size_t mostKept = 64;
constexpr std::size_t nameLength = 28; // two underscores and a ULID
constexpr std::string_view global = "window.";
constexpr std::string_view planted = " = 'alive';";
constexpr std::string_view delivered = " = (res === undefined || res === null)";

std::optional<std::string> nameAt(std::string_view text, std::size_t place) {
  const std::string_view name = text.substr(place).substr(0, nameLength);
  const bool isName =
      name.size() == nameLength && name.starts_with("__") &&
      std::ranges::all_of(name.substr(2), [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z'); });
  return isName ? std::optional(std::string(name)) : std::nullopt;
}

} // namespace

std::string PageJob::resultExpression() const {
  // First only turns of the microtask queue: nothing else comes between, least of all another page.
  return fmt::format("\n;(async () => {{"
                     "const end = performance.now() + 100;"
                     "for (let turn = 0; !(\"{0}\" in window); turn += 1) {{"
                     "if (performance.now() > end) return null;"
                     "await (turn < 64 ? null : new Promise((resolve) => setTimeout(resolve, 4)));"
                     "}}"
                     "const result = window.{0};"
                     "delete window.{0};"
                     "return [result];"
                     "}})()",
                     result);
}

std::optional<PageJob> readPageJob(std::string_view javascript) {
  if (!javascript.starts_with(global))
    return std::nullopt;
  const std::optional<std::string> canary = nameAt(javascript, global.size());
  if (!canary || !javascript.substr(global.size() + nameLength).starts_with(planted))
    return std::nullopt;
  // The last one is the job's own: code of the user's stands before it.
  const std::size_t end = javascript.rfind(delivered);
  if (end == std::string_view::npos || end < global.size() + nameLength)
    return std::nullopt;
  const std::optional<std::string> result = nameAt(javascript, end - nameLength);
  if (!result || javascript.substr(end - nameLength - global.size(), global.size()) != global)
    return std::nullopt;
  return PageJob{*canary, *result};
}

void PageJobResults::keep(PageJob job, boost::json::value result) {
  const std::lock_guard lock(mutex_);
  kept_.push_back({std::move(job), std::move(result)});
  if (kept_.size() > mostKept)
    kept_.pop_front();
}

std::optional<boost::json::value> PageJobResults::answer(std::string_view javascript) {
  const std::lock_guard lock(mutex_);
  for (auto kept = kept_.begin(); kept != kept_.end(); ++kept) {
    if (javascript == fmt::format("'' + window.{}", kept->job.canary))
      return boost::json::value("alive");
    if (javascript == fmt::format("window.{} || -1", kept->job.result))
      return kept->result;
    if (javascript == fmt::format("delete window.{}", kept->job.result)) {
      kept_.erase(kept);
      return boost::json::value(true);
    }
  }
  return std::nullopt;
}

} // namespace tabwright::scripting
