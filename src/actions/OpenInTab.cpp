// Opens a URL in a tab: in one that is there, or in a new one. The URL travels beside the script, as its argument. The
// page hasn't loaded when the tab is reported, so the URL stands in for its title.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/IsUsableURL.h"
#include "actions/SharedParameters.h"
#include "actions/enums/OpenInTabOptions.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"

namespace tabwright::actions {

class OpenInTab final : public TabAction {
  using TabSelection = OpenInTab_TabSelectionOption;

  Parameter<engine::TargetContext> targetContext{
      *this, shared::targetContext(services(), shared::TargetDescription::tabSelection)};
  Parameter<TabSelection> targetSelection{*this, {.name = "targetSelection", .defaultValue = TabSelection::frontTab}};
  Parameter<browserdata::BrowserTabEntity> targetTab{*this, shared::targetTab()};
  Parameter<browserdata::BrowserWindowEntity> targetWindow{*this, shared::targetWindow()};
  Parameter<std::string> newURL{
      *this, {.name = "newURL", .requestDialog = {{"What is the URL?"}}, .example = "https://example.com/"}};
  Parameter<PauseOption> pauseAfterSucessInSeconds{*this, shared::pauseAfterSucessInSeconds()};

public:
  explicit OpenInTab(const ActionServices& services)
      : TabAction(services, "OpenInTab", intents::tables::browserTabs, {.destroys = true}) {
    requireText(newURL);
    // Refused before the run counts and before anything is asked of a browser.
    require([this] { requireUsableURL(newURL, *newURL); });
    aimAt(targetContext);
    // Two choices bring a tab or a window; each looks at its own parameter while it is chosen.
    takeTargetFrom(targetTab, targetSelection, TabSelection::specificTab, targetContext);
    takeTargetFrom(targetWindow, targetSelection, TabSelection::newTabInWindow, targetContext);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise({
        {.when = {is(targetSelection, TabSelection::specificTab)},
         .key = "targetSelection.specificTab",
         .sentence = {&newURL, &targetSelection, &targetTab},
         .further = {&pauseAfterSucessInSeconds}},
        {.when = {is(targetSelection, TabSelection::newTabInWindow)},
         .key = "targetSelection.newTabInWindow",
         .sentence = {&newURL, &targetSelection, &targetWindow},
         .further = {&pauseAfterSucessInSeconds}},
        {.key = "targetSelection.defaultCase",
         .sentence = {&newURL, &targetSelection, &targetContext},
         .further = {&pauseAfterSucessInSeconds}},
    });
  }

private:
  // The lines call it newURL: names are the same in any case.
  [[nodiscard]] engine::Scriptacular::Arguments scriptArguments() const override { return {{"newUrl", *newURL}}; }

  [[nodiscard]] std::string scriptBody() const override {
    using Snippets = engine::AppleScriptSnippets;
    switch (*targetSelection) {
    case TabSelection::frontTab:
      return engine::joinedLines({Snippets::openWindowsCheck(), Snippets::frontVariables(),
                                  "set URL of FRONT_TAB to newURL\n\n"
                                  "set returnValue to my makeBrowserTabData(FRONT_TAB, FRONT_WINDOW, null)\n"
                                  "set tabTitle of returnValue to newURL\n"
                                  "return success(returnValue)"});
    case TabSelection::newTabInFrontWindow:
      return engine::joinedLines({Snippets::openWindowsCheck(), Snippets::frontVariables(),
                                  "set newTab to my createTabInWindow(front window, newURL)\n\n"
                                  "set returnValue to my makeBrowserTabData(newTab, FRONT_WINDOW, null)\n"
                                  "set tabTitle of returnValue to newURL\n"
                                  "return success(returnValue)"});
    case TabSelection::newTabInWindow:
      return engine::joinedLines({Snippets::requestedWindowCheck(targetWindow->id()),
                                  "set newTab to my createTabInWindow(REQUESTED_WINDOW, newURL)\n"
                                  "set returnValue to my makeBrowserTabData(newTab, REQUESTED_WINDOW, null)\n"
                                  "set tabTitle of returnValue to newURL\n\n"
                                  "return success(returnValue)"});
    case TabSelection::specificTab:
      return engine::joinedLines({Snippets::openWindowsCheck(), Snippets::tabLookup(targetTab->fullID),
                                  "set URL of nativeTab to newURL\n"
                                  "set returnValue to my makeBrowserTabData(nativeTab, nativeWindow, null)\n"
                                  "set tabTitle of returnValue to newURL\n\n"
                                  "return success(returnValue)"});
    }
    return {};
  }
};

template std::unique_ptr<ActionFrame> makeAction<OpenInTab>(const ActionServices&);

} // namespace tabwright::actions
