// Waits until the page of a tab has loaded far enough, 20 seconds at most. Running out of time is the answer false.
#include "actions/ActionList.h"
#include "actions/ScriptAction.h"
#include "actions/TabTarget.h"
#include "actions/enums/WaitForTabToFinishLoadingOptions.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class WaitForTabToFinishLoading final : public ScriptAction<bool, bool> {
  using ReadyState = WaitForTabToFinishLoading_DocumentReadyState;

  TabTarget tab{*this, services()};
  Parameter<ReadyState> readyState{*this, {.name = "readyState", .defaultValue = ReadyState::interactive}};

public:
  explicit WaitForTabToFinishLoading(const ActionServices& services)
      : ScriptAction(services, "WaitForTabToFinishLoading", intents::tables::browserTabs,
                     {.readsOnly = true, .isOpen = false}) {
    aimAtTab(tab);
    summarise(tab.summary({}, {&readyState}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    using Snippets = engine::AppleScriptSnippets;
    switch (*tab.tabSelection) {
    case TabSelectionOption::frontTab:
      return engine::joinedLines({Snippets::openWindowsCheck(), Snippets::frontVariables(), waitFor("FRONT_TAB")});
    case TabSelectionOption::specificTab:
      return engine::joinedLines({Snippets::openWindowsCheck(),
                                  Snippets::tabLookup(tab.targetTab->fullID, Snippets::TabLookupBinds::tab) + "\n",
                                  waitFor("nativeTab")});
    }
    return {};
  }

  [[nodiscard]] std::string waitFor(std::string_view tabVariable) const {
    const std::string state(intents::enumCase(*readyState).rawValue);
    // The library's handler polls and returns the script's result itself.
    return "return my waitForTabReadyState(" + std::string(tabVariable) + ", \"" + state + "\")";
  }

  [[nodiscard]] bool result(bool answer, const engine::TargetContext& /*browser*/) const override { return answer; }
};

template std::unique_ptr<ActionFrame> makeAction<WaitForTabToFinishLoading>(const ActionServices&);

} // namespace tabwright::actions
