// Loads the page of a tab anew. It doesn't wait for the page: WaitForTabToFinishLoading does.
#include "actions/ActionList.h"
#include "actions/PageJob.h"
#include "engine/AppleScriptSnippets.h"

namespace tabwright::actions {

namespace {

class ReloadTab final : public PageDeed {
  TabTarget tab{*this, services()};
  Parameter<PauseOption> pauseAfterSucessInSeconds{*this, shared::pauseAfterSucessInSeconds()};

public:
  explicit ReloadTab(const ActionServices& services) : PageDeed(services, "ReloadTab", intents::tables::browserTabs) {
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise(tab.summary({}, {}, {&pauseAfterSucessInSeconds}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return pageJob(tab, engine::AppleScriptSnippets::pageReload());
  }
};

} // namespace

std::unique_ptr<ActionFrame> makeReloadTab(const ActionServices& services) {
  return std::make_unique<ReloadTab>(services);
}

} // namespace tabwright::actions
