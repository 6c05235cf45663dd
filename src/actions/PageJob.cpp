#include "actions/PageJob.h"

#include "engine/AppleScriptSnippets.h"
#include "engine/errors/JavascriptError.h"
#include "platform/AsciiCase.h"

#include <fmt/core.h>

namespace tabwright::actions {

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
  return list.front();
}

bool succeeded(const std::vector<std::string>& list) {
  return platform::equalIgnoringCase(answerOf(list), "true");
}

std::optional<platform::Notice> noticeOfNothing(const std::vector<std::string>& list, const std::string& selector,
                                                std::string_view done) {
  if (list.empty() || succeeded(list))
    return std::nullopt;
  if (platform::equalIgnoringCase(list.front(), "false"))
    return platform::Notice{{"Notice", "noSuchElement", {}},
                            fmt::format("No element of the page matches “{}”, so nothing was {}.", selector, done)};
  return platform::Notice{{"Notice", "pageException", {}},
                          fmt::format("Nothing was {}. The page said: {}", done, list.front())};
}

} // namespace tabwright::actions
