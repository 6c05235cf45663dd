// Scrolls a page so that the first element that a CSS selector matches is in the middle. A selector that matches
// nothing is no failure.
#include "actions/ActionList.h"
#include "actions/PageJob.h"
#include "actions/ScriptAction.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

namespace {

class ScrollToElement final : public ScriptAction<std::vector<std::string>, intents::Nothing> {
  TabTarget tab{*this, services()};
  Parameter<std::string> cssSelector{*this, shared::cssSelector()};
  Parameter<PauseOption> pauseAfterSucessInSeconds{
      *this, {.name = "pauseAfterSucessInSeconds", .defaultValue = PauseOption::p00}};

public:
  explicit ScrollToElement(const ActionServices& services)
      : ScriptAction(services, "ScrollToElement", intents::tables::webPages) {
    requireText(cssSelector);
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise({
        {.when = {tab.isSpecific()},
         .key = "tabSelection.specificTab",
         .sentence = {&cssSelector, &tab.tabSelection, &tab.targetTab},
         .further = {&pauseAfterSucessInSeconds}},
        {.when = {},
         .key = "tabSelection.defaultCase",
         .sentence = {&cssSelector, &tab.tabSelection, &tab.targetContext},
         .further = {&pauseAfterSucessInSeconds}},
    });
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return pageJob(tab, "return [\n  scrollToPageElement(\"" + engine::escapeForLiteral(*cssSelector) + "\")\n]");
  }

  [[nodiscard]] intents::Nothing result(std::vector<std::string> answer,
                                        const engine::TargetContext& /*browser*/) const override {
    static_cast<void>(answerOf(answer));
    return {};
  }
};

} // namespace

std::unique_ptr<ActionFrame> makeScrollToElement(const ActionServices& services) {
  return std::make_unique<ScrollToElement>(services);
}

} // namespace tabwright::actions
