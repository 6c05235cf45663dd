// Reads a tab with all that its page shows: HTML, text, and what is selected.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/TabTarget.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"
#include "engine/errors/AppleScriptRuntimeError.h"

namespace tabwright::actions {

class GetDetailsOfTab final : public TabAction {
  TabTarget tab{*this, services()};

public:
  explicit GetDetailsOfTab(const ActionServices& services)
      : TabAction(services, "GetDetailsOfTab", intents::tables::browserTabs, {.readsOnly = true}) {
    aimAtTab(tab);
    summarise(tab.summary({}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    using Snippets = engine::AppleScriptSnippets;
    switch (*tab.tabSelection) {
    case TabSelectionOption::frontTab:
      return engine::joinedLines({Snippets::openWindowsCheck(), Snippets::frontVariables(),
                                  "return success(my makeDetailedBrowserTabDataForID(FRONT_TAB_ID))"});
    case TabSelectionOption::specificTab:
      return engine::joinedLines({Snippets::openWindowsCheck(), lookupWithDetails()});
    }
    return {};
  }

  [[nodiscard]] std::string lookupWithDetails() const {
    // The library's handler tells a tab that is gone by having no value, where the lookup of other actions ends the
    // script.
    const std::string tabNotFound = std::to_string(engine::rawValue(engine::AppleScriptRuntimeError::tabNotFound));
    return "set tabData to my makeDetailedBrowserTabDataForID(\"" + tab.targetTab->id() +
           "\")\n"
           "if tabData is missing value or tabData is null then\n"
           "  return failure(" +
           tabNotFound +
           ")\n"
           "end if\n\n"
           "return success(tabData)";
  }
};

template std::unique_ptr<ActionFrame> makeAction<GetDetailsOfTab>(const ActionServices&);

} // namespace tabwright::actions
