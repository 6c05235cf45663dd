// Gives the front window of a browser, under the title that the browser gives it.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/SharedParameters.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class GetFrontmostWindow final : public WindowAction {
  Parameter<engine::TargetContext> targetContext{*this, shared::targetContext(services())};

public:
  explicit GetFrontmostWindow(const ActionServices& services)
      : WindowAction(services, "GetFrontmostWindow", intents::tables::browserWindows,
                     {.readsOnly = true, .isOpen = false}) {
    aimAt(targetContext);
    summarise({{.sentence = {&targetContext}}});
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    return engine::joinedLines(
        {engine::AppleScriptSnippets::openWindowsCheck(), "return success(my makeBrowserWindowData(front window))"});
  }
};

template std::unique_ptr<ActionFrame> makeAction<GetFrontmostWindow>(const ActionServices&);

} // namespace tabwright::actions
