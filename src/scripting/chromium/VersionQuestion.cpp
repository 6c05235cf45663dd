#include "scripting/chromium/VersionQuestion.h"

namespace tabwright::scripting {

namespace {

constexpr std::string_view question = "navigator.userAgentData?.brands.find(b => b.brand === 'Chromium')?.version || "
                                      "navigator.userAgent.match(/Chrome\\/(\\d+)/)?.[1] || ''";

} // namespace

std::optional<std::string> answerToVersionQuestion(std::string_view javascript, const BrowserSnapshot& browser) {
  if (javascript != question || browser.version.empty())
    return std::nullopt;
  return browser.version.substr(0, browser.version.find('.'));
}

} // namespace tabwright::scripting
