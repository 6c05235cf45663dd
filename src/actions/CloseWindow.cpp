// Closes a window with all its tabs, and describes it as it was. A name that was kept for it stays until the next
// GetListOfWindows finds the window gone.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/SharedParameters.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

namespace {

class CloseWindow final : public WindowAction {
  Parameter<browserdata::BrowserWindowEntity> targetWindow{*this, shared::requiredWindow()};

public:
  explicit CloseWindow(const ActionServices& services)
      : WindowAction(services, "CloseWindow", intents::tables::browserWindows, {.destroys = true, .isOpen = false}) {
    aimAtOwnerOf(targetWindow);
    summarise({{.when = {}, .key = "", .sentence = {&targetWindow}, .further = {}}});
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return engine::joinedLines({engine::AppleScriptSnippets::requestedWindowCheck(targetWindow->id()),
                                "set windowData to my makeBrowserWindowData(REQUESTED_WINDOW)\n"
                                "close REQUESTED_WINDOW\n\n"
                                "return success(windowData)"});
  }
};

} // namespace

std::unique_ptr<ActionFrame> makeCloseWindow(const ActionServices& services) {
  return std::make_unique<CloseWindow>(services);
}

} // namespace tabwright::actions
