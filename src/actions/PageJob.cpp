#include "actions/PageJob.h"

#include "engine/AppleScriptSnippets.h"
#include "engine/errors/JavascriptError.h"
#include "platform/AsciiCase.h"

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

} // namespace tabwright::actions
