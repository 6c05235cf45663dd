// Brings a window to the front of its browser, and the browser to the front.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/SharedParameters.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class FocusWindow final : public WindowAction {
  Parameter<browserdata::BrowserWindowEntity> targetWindow{*this, shared::requiredWindow()};

public:
  explicit FocusWindow(const ActionServices& services)
      : WindowAction(services, "FocusWindow", intents::tables::browserWindows,
                     {.isIdempotent = true, .isOpen = false}) {
    aimAtOwnerOf(targetWindow);
    summarise({{.sentence = {&targetWindow}}});
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return engine::joinedLines({engine::AppleScriptSnippets::requestedWindowCheck(targetWindow->id()),
                                "set index of REQUESTED_WINDOW to 1\n"
                                "activate\n\n"
                                "return success(my makeBrowserWindowData(REQUESTED_WINDOW))"});
  }
};

template std::unique_ptr<ActionFrame> makeAction<FocusWindow>(const ActionServices&);

} // namespace tabwright::actions
