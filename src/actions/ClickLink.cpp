// Clicks the first link of a page whose text is a label, or holds it. Without such a link the result is false.
#include "actions/ActionList.h"
#include "actions/PageJob.h"
#include "actions/ScriptAction.h"
#include "actions/enums/ClickLinkOptions.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

namespace {

class ClickLink final : public ScriptAction<std::vector<std::string>, bool> {
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
  explicit ClickLink(const ActionServices& services) : ScriptAction(services, "ClickLink", intents::tables::webPages) {
    requireText(label);
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise({
        {.when = {tab.isSpecific()},
         .key = "tabSelection.specificTab",
         .sentence = {&linkSelection, &label, &tab.tabSelection, &tab.targetTab},
         .further = {&pauseAfterSucessInSeconds}},
        {.when = {},
         .key = "tabSelection.defaultCase",
         .sentence = {&linkSelection, &label, &tab.tabSelection, &tab.targetContext},
         .further = {&pauseAfterSucessInSeconds}},
    });
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return pageJob(tab, "return [\n  clickLinkLabelled(\"" + engine::escapeForLiteral(*label) + "\", " +
                            javascriptText(*linkSelection == LinkSelection::labelExact) + ")\n]");
  }

  [[nodiscard]] bool result(std::vector<std::string> answer, const engine::TargetContext& /*browser*/) const override {
    return succeeded(answer);
  }
};

} // namespace

std::unique_ptr<ActionFrame> makeClickLink(const ActionServices& services) {
  return std::make_unique<ClickLink>(services);
}

} // namespace tabwright::actions
