// Loads the page of a tab anew. It doesn't wait for the page: WaitForTabToFinishLoading does.
#include "actions/ActionList.h"
#include "actions/PageJob.h"
#include "actions/ScriptAction.h"

namespace tabwright::actions {

namespace {

class ReloadTab final : public ScriptAction<std::vector<std::string>, intents::Nothing> {
  TabTarget tab{*this, services()};
  Parameter<PauseOption> pauseAfterSucessInSeconds{*this, shared::pauseAfterSucessInSeconds()};

public:
  explicit ReloadTab(const ActionServices& services)
      : ScriptAction(services, "ReloadTab", intents::tables::browserTabs) {
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise({
        {.when = {tab.isSpecific()},
         .key = "tabSelection.specificTab",
         .sentence = {&tab.tabSelection, &tab.targetTab},
         .further = {&pauseAfterSucessInSeconds}},
        {.when = {},
         .key = "tabSelection.defaultCase",
         .sentence = {&tab.tabSelection, &tab.targetContext},
         .further = {&pauseAfterSucessInSeconds}},
    });
  }

private:
  [[nodiscard]] std::string scriptBody() const override { return pageJob(tab, "document.location.reload()"); }

  [[nodiscard]] intents::Nothing result(std::vector<std::string> answer,
                                        const engine::TargetContext& /*browser*/) const override {
    static_cast<void>(answerOf(answer));
    return {};
  }
};

} // namespace

std::unique_ptr<ActionFrame> makeReloadTab(const ActionServices& services) {
  return std::make_unique<ReloadTab>(services);
}

} // namespace tabwright::actions
