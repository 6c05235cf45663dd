// Brings a tab to the front of its window, the window to the front of its browser, and the browser to the front.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/SharedParameters.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class FocusTab final : public TabAction {
  Parameter<browserdata::BrowserTabEntity> targetTab{*this, shared::requiredTab()};

public:
  explicit FocusTab(const ActionServices& services)
      : TabAction(services, "FocusTab", intents::tables::browserTabs, {.isIdempotent = true, .isOpen = false}) {
    aimAtOwnerOf(targetTab);
    summarise({{.sentence = {&targetTab}}});
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    using Snippets = engine::AppleScriptSnippets;
    return engine::joinedLines({Snippets::openWindowsCheck(), Snippets::tabLookup(targetTab->fullID),
                                "my focusTabAndWindow(nativeTab, nativeWindow)\n\n"
                                "return success(my makeBrowserTabData(nativeTab, nativeWindow, null))"});
  }

  [[nodiscard]] browserdata::BrowserTabEntity result(browserdata::BrowserTabData answer,
                                                     const engine::TargetContext& /*browser*/) const override {
    return {answer, targetTab->targetContext};
  }
};

template std::unique_ptr<ActionFrame> makeAction<FocusTab>(const ActionServices&);

} // namespace tabwright::actions
