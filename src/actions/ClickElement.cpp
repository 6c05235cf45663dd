// Clicks the first element of a page that a CSS selector matches. A selector that matches nothing is no failure.
#include "actions/ActionList.h"
#include "actions/NamedElement.h"
#include "actions/PageJob.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class ClickElement final : public PageCommand {
  TabTarget tab{*this, services()};
  Parameter<std::string> cssSelector{*this, shared::cssSelector()};
  Parameter<PauseOption> pauseAfterSucessInSeconds{*this, shared::pauseAfterSucessInSeconds()};

public:
  explicit ClickElement(const ActionServices& services)
      : PageCommand(services, "ClickElement", intents::tables::webPages, {.destroys = true}) {
    requireText(cssSelector);
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise(tab.summary({&cssSelector}, {}, {&pauseAfterSucessInSeconds}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    // Escaped for JavaScript only; the job as a whole is escaped again for the AppleScript around it.
    return pageJob(tab, withNamedElements({*cssSelector}, "return [\n  clickPageElement(\"" +
                                                              engine::escapeForJavascript(elementText(*cssSelector)) +
                                                              "\")\n]"));
  }

  [[nodiscard]] std::optional<platform::Notice> noticeOf(const std::vector<std::string>& answer) const override {
    return noticeOfNothing(answer, "Nothing was clicked", noSuchElement(*cssSelector));
  }
};

template std::unique_ptr<ActionFrame> makeAction<ClickElement>(const ActionServices&);

} // namespace tabwright::actions
