// Closes a window with all its tabs, and describes it as it was. A name that was kept for it stays until the next
// GetListOfWindows finds the window gone.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/SharedParameters.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class CloseWindow final : public WindowAction {
  Parameter<browserdata::BrowserWindowEntity> targetWindow{*this, shared::requiredWindow()};

public:
  explicit CloseWindow(const ActionServices& services)
      : WindowAction(services, "CloseWindow", intents::tables::browserWindows, {.destroys = true, .isOpen = false}) {
    aimAtOwnerOf(targetWindow);
    summarise({{.sentence = {&targetWindow}}});
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return engine::joinedLines({engine::AppleScriptSnippets::requestedWindowCheck(targetWindow->id()),
                                "set windowData to my makeBrowserWindowData(REQUESTED_WINDOW)\n"
                                "close REQUESTED_WINDOW\n\n"
                                "return success(windowData)"});
  }
};

template std::unique_ptr<ActionFrame> makeAction<CloseWindow>(const ActionServices&);

} // namespace tabwright::actions
