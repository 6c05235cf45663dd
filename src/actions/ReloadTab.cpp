// Loads the page of a tab anew. It doesn't wait for the page: WaitForTabToFinishLoading does.
#include "actions/ActionList.h"
#include "actions/PageJob.h"
#include "engine/AppleScriptSnippets.h"

namespace tabwright::actions {

class ReloadTab final : public PageCommand {
  TabTarget tab{*this, services()};
  Parameter<PauseOption> pauseAfterSucessInSeconds{*this, shared::pauseAfterSucessInSeconds()};

public:
  explicit ReloadTab(const ActionServices& services)
      : PageCommand(services, "ReloadTab", intents::tables::browserTabs, {.destroys = true}) {
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise(tab.summary({}, {}, {&pauseAfterSucessInSeconds}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return pageJob(tab, engine::AppleScriptSnippets::pageReload());
  }
};

template std::unique_ptr<ActionFrame> makeAction<ReloadTab>(const ActionServices&);

} // namespace tabwright::actions
