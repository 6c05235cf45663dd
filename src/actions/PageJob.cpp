// A job's answer is a list of texts: that of one page function has one, which is "true" or "false" for those that tell
// of success, and the text of an exception where the function threw. So an exception is known as what is neither of the
// two.
#include "actions/PageJob.h"

#include "engine/AppleScriptSnippets.h"
#include "engine/errors/ElementError.h"
#include "engine/errors/JavascriptError.h"
#include "platform/AsciiCase.h"

#include <fmt/core.h>

namespace tabwright::actions {

namespace {

// Such an answer becomes a failure that says it all.
bool tellsNothing(const std::vector<std::string>& list) {
  return list.empty() || engine::ElementFailure::inAnswer(list).has_value();
}

} // namespace

std::string pageJob(const TabTarget& tab, std::string_view javascript, double timeout) {
  using engine::AppleScriptSnippets;
  switch (*tab.tabSelection) {
  case TabSelectionOption::frontTab:
    return AppleScriptSnippets::jobForFrontTab(javascript, timeout, pageJobInterval);
  case TabSelectionOption::specificTab:
    return AppleScriptSnippets::jobForRequestedTab(tab.targetTab->fullID, javascript, timeout, pageJobInterval);
  }
  return {};
}

const std::string& answerOf(const std::vector<std::string>& list) {
  if (list.empty())
    throw platform::failure(engine::JavascriptError::unableToParseJS);
  if (const auto failure = engine::ElementFailure::inAnswer(list))
    throw engine::ElementFailure(*failure);
  return list.front();
}

bool succeeded(const std::vector<std::string>& list) {
  return platform::equalIgnoringCase(answerOf(list), "true");
}

std::optional<platform::Notice> noticeOfException(const std::vector<std::string>& list, std::string_view undone) {
  if (tellsNothing(list) || succeeded(list) || platform::equalIgnoringCase(list.front(), "false"))
    return std::nullopt;
  return platform::Notice{{"Notice", "pageException", {}}, fmt::format("{}. The page said: {}", undone, list.front())};
}

std::optional<platform::Notice> noticeOfNothing(const std::vector<std::string>& list, std::string_view undone,
                                                const Reason& reason) {
  if (tellsNothing(list) || succeeded(list))
    return std::nullopt;
  if (std::optional<platform::Notice> exception = noticeOfException(list, undone))
    return exception;
  return platform::Notice{{"Notice", std::string(reason.caseName), {}}, fmt::format("{}: {}.", undone, reason.clause)};
}

Reason noSuchElement(const std::string& selector) {
  return {"noSuchElement", fmt::format("no element of the page matches “{}”", selector)};
}

} // namespace tabwright::actions
