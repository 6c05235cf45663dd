#include "scripting/chromium/VersionQuestion.h"

#include "platform/TextTemplate.h"
#include "tabwright_scriptingResources.h"

namespace tabwright::scripting {

std::optional<std::string> answerToVersionQuestion(std::string_view javascript, const BrowserSnapshot& browser) {
  static const std::string question = platform::TextTemplate(resources::versionQuestion_js).fill({});
  if (javascript != question || browser.version.empty())
    return std::nullopt;
  return browser.version.substr(0, browser.version.find('.'));
}

} // namespace tabwright::scripting
