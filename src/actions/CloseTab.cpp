// Closes a tab. It is described as it was; but its reference names nothing any more, so the id in it becomes 0.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/TabTarget.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class CloseTab final : public TabAction {
  TabTarget tab{*this, services()};

public:
  explicit CloseTab(const ActionServices& services)
      : TabAction(services, "CloseTab", intents::tables::browserTabs, {.destroys = true, .isOpen = false}) {
    aimAtTab(tab);
    summarise(tab.summary({}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    using Snippets = engine::AppleScriptSnippets;
    switch (*tab.tabSelection) {
    case TabSelectionOption::frontTab:
      // The record is made first: a tab that is closed can't be asked.
      return engine::joinedLines({Snippets::openWindowsCheck(), Snippets::frontVariables(),
                                  "set tabData to my makeBrowserTabData(FRONT_TAB, FRONT_WINDOW, null)\n"
                                  "set tabID of tabData to \"0\"\n"
                                  "close FRONT_TAB\n\n"
                                  "return success(tabData)"});
    case TabSelectionOption::specificTab:
      return engine::joinedLines({Snippets::openWindowsCheck(), Snippets::tabLookup(tab.targetTab->fullID),
                                  "\nset tabData to my makeBrowserTabData(nativeTab, nativeWindow, null)\n"
                                  "set tabID of tabData to \"0\"\n"
                                  "close nativeTab\n\n"
                                  "return success(tabData)"});
    }
    return {};
  }
};

template std::unique_ptr<ActionFrame> makeAction<CloseTab>(const ActionServices&);

} // namespace tabwright::actions
