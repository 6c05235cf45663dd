// Clicks the first link of a page whose text is a label, or holds it. Without such a link the result is false.
#include "actions/ActionList.h"
#include "actions/PageJob.h"
#include "actions/enums/ClickLinkOptions.h"
#include "engine/ScriptText.h"

#include <fmt/core.h>

namespace tabwright::actions {

class ClickLink final : public PageAttempt {
  using LinkSelection = ClickLink_LinkSelectionOption;

  TabTarget tab{*this, services()};
  Parameter<LinkSelection> linkSelection{*this, {.name = "linkSelection", .defaultValue = LinkSelection::labelExact}};
  Parameter<std::string> label{*this,
                               {.name = "label",
                                .requestDialog = {{"What's the link text?"}},
                                .textInput = shared::literalInput(),
                                .example = "Read more"}};
  Parameter<PauseOption> pauseAfterSucessInSeconds{
      *this, {.name = "pauseAfterSucessInSeconds", .defaultValue = PauseOption::p00}};

public:
  explicit ClickLink(const ActionServices& services)
      : PageAttempt(services, "ClickLink", intents::tables::webPages, {.destroys = true}) {
    requireText(label);
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise(tab.summary({&linkSelection, &label}, {}, {&pauseAfterSucessInSeconds}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return pageJob(tab, "return [\n  clickLinkLabelled(\"" + engine::escapeForJavascript(*label) + "\", " +
                            javascriptText(*linkSelection == LinkSelection::labelExact) + ")\n]");
  }

  [[nodiscard]] std::optional<platform::Notice> noticeOf(const std::vector<std::string>& answer) const override {
    const char* const verb = *linkSelection == LinkSelection::labelExact ? "reads" : "holds";
    return noticeOfNothing(answer, "Nothing was clicked",
                           {"noSuchLink", fmt::format("no link of the page {} “{}”", verb, *label)});
  }
};

template std::unique_ptr<ActionFrame> makeAction<ClickLink>(const ActionServices&);

} // namespace tabwright::actions
