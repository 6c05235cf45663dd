// A job is known by the letters of the program's text around its parts. Programs are made of the same resources, line
// by line without indentation. Nothing is parsed: a text that differs in one letter is other JavaScript, and is
// evaluated as it stands. Both lists of results are bounded, since programs that were stopped never ask for theirs.
#include "scripting/driver/PageJobs.h"

#include "platform/TextTemplate.h"
#include "tabwright_scriptingResources.h"

#include <boost/json/object.hpp>
#include <fmt/core.h>

#include <algorithm>

namespace tabwright::scripting {

using platform::TextTemplate;

namespace {

constexpr std::size_t mostKept = 64;

/// The resource as it stands in programs. Only blanks indent there.
std::string withoutIndentation(std::string_view text) {
  std::string lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    const std::string_view line = text.substr(0, end);
    lines += line.substr(std::min(line.find_first_not_of(' '), line.size()));
    text.remove_prefix(end);
  }
  return lines;
}

/// True for two underscores and a ULID.
bool isVariable(std::string_view name) {
  constexpr std::size_t length = 28;
  return name.size() == length && name.starts_with("__") &&
         std::ranges::all_of(name.substr(2), [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z'); });
}

/// The variable in a text that is the template filled with one; nothing for any other.
std::optional<std::string_view> variableIn(std::string_view text, const TextTemplate& letters, std::string_view name) {
  const auto parts = letters.match(text, name);
  return parts && isVariable(parts->at(std::string(name))) ? std::optional(parts->at(std::string(name))) : std::nullopt;
}

std::optional<std::string_view> askedCanary(std::string_view javascript) {
  static const TextTemplate question(resources::canaryQuestion_js);
  return variableIn(javascript, question, "CANARY");
}

std::optional<std::string_view> askedResult(std::string_view javascript) {
  static const TextTemplate question(resources::resultQuestion_js);
  return variableIn(javascript, question, "RESULT");
}

std::optional<std::string_view> removedResult(std::string_view javascript) {
  static const TextTemplate removal(resources::resultRemoval_js);
  return variableIn(javascript, removal, "RESULT");
}

} // namespace

bool PageJob::reloadsThePage() const {
  static const std::string reload = TextTemplate(resources::pageReload_js).fill({});
  return code.find(reload) != std::string::npos;
}

std::optional<PageJob> readPageJob(std::string_view javascript) {
  static const TextTemplate planted(withoutIndentation(resources::plantedJob_js));
  const auto parts = planted.match(javascript, "WORK");
  if (!parts || !isVariable(parts->at("CANARY")) || !isVariable(parts->at("RESULT")))
    return std::nullopt;
  const std::string_view work = parts->at("WORK");
  const std::string_view before = javascript.substr(0, static_cast<std::size_t>(work.data() - javascript.data()) - 1);
  // The line that sets the canary stays; ours stands in place of those that deliver the result.
  return PageJob{.canary = std::string(parts->at("CANARY")),
                 .result = std::string(parts->at("RESULT")),
                 .code = fmt::format("{}{}('{}', '{}', {})", before, resources::pageJob_js, parts->at("RESULT"),
                                     parts->at("EMPTY_RESULT_MARKER"), work)};
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
  return askedResult(javascript).has_value();
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
  const auto asked = askedResult(javascript);
  const platform::MutexLock lock(mutex_);
  const auto found = std::ranges::find_if(deferred_, [&](const PageJob& job) { return asked == job.result; });
  if (found == deferred_.end())
    return std::nullopt;
  PageJob job = std::move(*found);
  deferred_.erase(found);
  return job;
}

std::optional<boost::json::value> PageJobResults::answer(std::string_view javascript) {
  const auto canary = askedCanary(javascript);
  const auto result = askedResult(javascript);
  const auto removed = removedResult(javascript);
  const platform::MutexLock lock(mutex_);
  // The page that the job is for hasn't come, so it can't have gone away either.
  if (std::ranges::any_of(deferred_, [&](const PageJob& job) { return canary == job.canary; }))
    return boost::json::value("alive");
  for (auto kept = kept_.begin(); kept != kept_.end(); ++kept) {
    if (canary == kept->job.canary)
      return boost::json::value("alive");
    if (result == kept->job.result)
      return kept->answer;
    if (removed == kept->job.result) {
      kept_.erase(kept);
      return boost::json::value(true);
    }
  }
  return std::nullopt;
}

} // namespace tabwright::scripting
