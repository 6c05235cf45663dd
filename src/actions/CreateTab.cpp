// Makes an empty tab: in the front window, in a window of its own, or in a given window.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/SharedParameters.h"
#include "actions/enums/CreateTabOptions.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class CreateTab final : public TabAction {
  using WindowType = CreateTab_WindowTypeOption;

  Parameter<engine::TargetContext> targetContext{
      *this, shared::targetContext(services(), shared::TargetDescription::targetWindow)};
  Parameter<WindowType> windowType{*this, {.name = "windowType", .defaultValue = WindowType::frontWindow}};
  Parameter<browserdata::BrowserWindowEntity> targetWindow{*this, shared::targetWindow()};

public:
  explicit CreateTab(const ActionServices& services)
      : TabAction(services, "CreateTab", intents::tables::browserTabs, {.isOpen = false}) {
    aimAt(targetContext);
    takeTargetFrom(targetWindow, windowType, WindowType::specificWindow, targetContext);
    summarise({
        {.when = {is(windowType, WindowType::specificWindow)},
         .key = "windowType.specificWindow",
         .sentence = {&windowType, &targetWindow}},
        {.key = "windowType.defaultCase", .sentence = {&windowType, &targetContext}},
    });
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    using Snippets = engine::AppleScriptSnippets;
    switch (*windowType) {
    case WindowType::frontWindow:
      return engine::joinedLines({Snippets::openWindowsCheck(), Snippets::frontVariables(),
                                  "set newTab to my createTabInWindow(FRONT_WINDOW, null)\n"
                                  "return success(my makeBrowserTabData(newTab, FRONT_WINDOW, null))"});
    case WindowType::newWindow:
      // No check for windows here: this is what makes one.
      return "make document\n"
             "set newWindow to front window\n"
             "set newTab to first item in tabs of newWindow\n"
             "return success(my makeBrowserTabData(newTab, newWindow, null))";
    case WindowType::specificWindow:
      return engine::joinedLines({Snippets::requestedWindowCheck(targetWindow->id()),
                                  "set newTab to my createTabInWindow(REQUESTED_WINDOW, null)\n"
                                  "return success(my makeBrowserTabData(newTab, REQUESTED_WINDOW, null))"});
    }
    return {};
  }
};

template std::unique_ptr<ActionFrame> makeAction<CreateTab>(const ActionServices&);

} // namespace tabwright::actions
