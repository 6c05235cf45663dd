// A job is known by the letters of the program's text, at its beginning and its end: code of the user's stands between.
#include "scripting/driver/PageJobs.h"

#include "tabwright_scriptingResources.h"

#include <boost/json/object.hpp>
#include <fmt/core.h>

#include <algorithm>

namespace tabwright::scripting {

namespace {

constexpr std::size_t mostKept = 64;
constexpr std::size_t nameLength = 28; // two underscores and a ULID
constexpr std::string_view global = "window.";
constexpr std::string_view planted = " = 'alive';\n(";
constexpr std::string_view delivering = ")()\n.then(res => {\n";
constexpr std::string_view delivered = " = (res === undefined || res === null)\n? ['";
constexpr std::string_view ifAbsent = " || -1";

std::optional<std::string> nameAt(std::string_view text, std::size_t place) {
  const std::string_view name = text.substr(std::min(place, text.size())).substr(0, nameLength);
  const bool isName =
      name.size() == nameLength && name.starts_with("__") &&
      std::ranges::all_of(name.substr(2), [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z'); });
  return isName ? std::optional(std::string(name)) : std::nullopt;
}

} // namespace

std::optional<PageJob> readPageJob(std::string_view javascript) {
  constexpr std::size_t canaryPlace = global.size();
  if (!javascript.starts_with(global))
    return std::nullopt;
  const std::optional<std::string> canary = nameAt(javascript, canaryPlace);
  if (!canary || !javascript.substr(canaryPlace + nameLength).starts_with(planted))
    return std::nullopt;
  const std::size_t begin = canaryPlace + nameLength + planted.size();

  // The last one is the job's own: code of the user's stands before it.
  const std::size_t end = javascript.rfind(delivering);
  if (end == std::string_view::npos || end < begin)
    return std::nullopt;
  std::string_view delivery = javascript.substr(end + delivering.size());
  const std::optional<std::string> result = nameAt(delivery, global.size());
  if (!result || !delivery.starts_with(global))
    return std::nullopt;
  delivery.remove_prefix(global.size() + nameLength);
  if (!delivery.starts_with(delivered))
    return std::nullopt;
  const std::string_view noValue =
      delivery.substr(delivered.size(), delivery.find('\'', delivered.size()) - delivered.size());

  return PageJob{.canary = *canary,
                 .result = *result,
                 .code = fmt::format("{}\n{}('{}', '{}', {})", javascript.substr(0, begin - 2), resources::pageJob_js,
                                     *result, noValue, javascript.substr(begin, end - begin))};
}

std::optional<PageJobOutcome> PageJobOutcome::read(const boost::json::value& value) {
  const boost::json::object* outcome = value.if_object();
  if (!outcome)
    return std::nullopt;
  if (const boost::json::value* texts = outcome->if_contains("texts"))
    return PageJobOutcome{*texts, std::nullopt};
  const boost::json::value* failure = outcome->if_contains("failure");
  if (!failure || !failure->is_string())
    return std::nullopt;
  const std::string text(failure->get_string());
  // The program asks what was thrown for its text.
  const bool isNothing = text.ends_with("(reading 'toString')");
  return PageJobOutcome{-1, platform::Notice{{"PageCode", "failed", {}},
                                             isNothing ? "The page’s code threw null or undefined, which has no text."
                                                       : fmt::format("The page’s code failed: {}", text)}};
}

bool asksForResult(std::string_view javascript) {
  return javascript.starts_with(global) && nameAt(javascript, global.size()) &&
         javascript.substr(global.size() + nameLength) == ifAbsent;
}

platform::Notice notBegun(const std::string& exception) {
  return {{"PageCode", "notBegun", {}}, fmt::format("The page could not begin with the code: {}", exception)};
}

void PageJobResults::keep(PageJob job, boost::json::value answer) {
  job.code.clear();
  const platform::MutexLock lock(mutex_);
  kept_.push_back({std::move(job), std::move(answer)});
  if (kept_.size() > mostKept)
    kept_.pop_front();
}

void PageJobResults::defer(PageJob job) {
  const platform::MutexLock lock(mutex_);
  deferred_.push_back(std::move(job));
  if (deferred_.size() > mostKept)
    deferred_.pop_front();
}

std::optional<PageJob> PageJobResults::takeDeferred(std::string_view javascript) {
  const platform::MutexLock lock(mutex_);
  const auto found = std::ranges::find_if(
      deferred_, [&](const PageJob& job) { return javascript == fmt::format("window.{}{}", job.result, ifAbsent); });
  if (found == deferred_.end())
    return std::nullopt;
  PageJob job = std::move(*found);
  deferred_.erase(found);
  return job;
}

std::optional<boost::json::value> PageJobResults::answer(std::string_view javascript) {
  const platform::MutexLock lock(mutex_);
  for (const PageJob& job : deferred_) {
    if (javascript == fmt::format("'' + window.{}", job.canary))
      return boost::json::value("alive");
  }
  for (auto kept = kept_.begin(); kept != kept_.end(); ++kept) {
    if (javascript == fmt::format("'' + window.{}", kept->job.canary))
      return boost::json::value("alive");
    if (javascript == fmt::format("window.{}{}", kept->job.result, ifAbsent))
      return kept->answer;
    if (javascript == fmt::format("delete window.{}", kept->job.result)) {
      kept_.erase(kept);
      return boost::json::value(true);
    }
  }
  return std::nullopt;
}

} // namespace tabwright::scripting
