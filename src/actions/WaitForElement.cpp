// Waits until a page has an element that a CSS selector matches, and shows it. One number of seconds bounds the waiting
// in the page and the polling from the script.
#include "actions/ActionList.h"
#include "actions/NamedElement.h"
#include "actions/PageJob.h"
#include "actions/ScriptAction.h"
#include "actions/enums/WaitForElementOptions.h"
#include "engine/ScriptText.h"
#include "engine/errors/AppleScriptRuntimeError.h"

#include <fmt/core.h>

namespace tabwright::actions {

class WaitForElement final : public ScriptAction<std::vector<std::string>, bool> {
  using Timeout = WaitForElement_TimeoutOption;
  using OnFailure = WaitForElement_OnFailureOption;

  TabTarget tab{*this, services()};
  Parameter<std::string> cssSelector{*this, shared::cssSelector()};
  Parameter<Timeout> timeout{*this, {.name = "timeout", .defaultValue = Timeout::p10}};
  Parameter<OnFailure> onFailure{*this, {.name = "onFailure", .defaultValue = OnFailure::raiseError}};

public:
  explicit WaitForElement(const ActionServices& services)
      : ScriptAction(services, "WaitForElement", intents::tables::webPages, {.readsOnly = true}) {
    requireText(cssSelector);
    aimAtTab(tab);
    summarise(tab.summary({&timeout, &cssSelector}, {}, {&onFailure}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    // The raw value is the number as the page takes it.
    const std::string seconds(intents::enumCase(*timeout).rawValue);
    return pageJob(tab,
                   withNamedElements({*cssSelector},
                                     "return [\n  await waitForPageElement(\"" +
                                         engine::escapeForJavascript(elementText(*cssSelector)) + "\", " + seconds +
                                         ")\n]",
                                     MissingElement::isWaitedFor),
                   secondsOf(*timeout));
  }

  [[nodiscard]] bool result(std::vector<std::string> answer, const engine::TargetContext& /*browser*/) const override {
    const bool isFound = succeeded(answer);
    if (!isFound && *onFailure == OnFailure::raiseError)
      throw platform::failure(engine::AppleScriptRuntimeError::pageElementNotFound);
    return isFound;
  }

  [[nodiscard]] std::optional<platform::Notice> noticeOf(const std::vector<std::string>& answer) const override {
    constexpr std::string_view undone = "Nothing was found";
    if (*onFailure != OnFailure::raiseError)
      return noticeOfException(answer, undone);
    return noticeOfNothing(
        answer, undone,
        {"noSuchElement", fmt::format("no element that can be seen matched “{}” in time", *cssSelector)});
  }
};

template std::unique_ptr<ActionFrame> makeAction<WaitForElement>(const ActionServices&);

} // namespace tabwright::actions
