// Scrolls a page so that the first element that a CSS selector matches is in the middle. A selector that matches
// nothing is no failure.
#include "actions/ActionList.h"
#include "actions/NamedElement.h"
#include "actions/PageJob.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class ScrollToElement final : public PageCommand {
  TabTarget tab{*this, services()};
  Parameter<std::string> cssSelector{*this, shared::cssSelector()};
  Parameter<PauseOption> pauseAfterSucessInSeconds{
      *this, {.name = "pauseAfterSucessInSeconds", .defaultValue = PauseOption::p00}};

public:
  explicit ScrollToElement(const ActionServices& services)
      : PageCommand(services, "ScrollToElement", intents::tables::webPages, {.isIdempotent = true}) {
    requireText(cssSelector);
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise(tab.summary({&cssSelector}, {}, {&pauseAfterSucessInSeconds}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return pageJob(tab, withNamedElements({*cssSelector}, "return [\n  scrollToPageElement(\"" +
                                                              engine::escapeForJavascript(elementText(*cssSelector)) +
                                                              "\")\n]"));
  }

  [[nodiscard]] std::optional<platform::Notice> noticeOf(const std::vector<std::string>& answer) const override {
    return noticeOfNothing(answer, "Nothing was scrolled to", noSuchElement(*cssSelector));
  }
};

template std::unique_ptr<ActionFrame> makeAction<ScrollToElement>(const ActionServices&);

} // namespace tabwright::actions
