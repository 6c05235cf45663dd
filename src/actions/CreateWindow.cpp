// Makes a window. Browsers of the Chromium family make it in the wanted mode and keep its name. Safari makes standard
// windows only: a private one comes from its menu, and names are kept on this side. Which of the two ways is taken
// follows from the parameter as it was given: the frontmost browser always goes the family's way.
#include "actions/ActionList.h"
#include "actions/EntityAction.h"
#include "actions/IsSafari.h"
#include "actions/IsUsableURL.h"
#include "actions/SharedParameters.h"
#include "actions/enums/CreateWindowOptions.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptText.h"
#include "intents/UsageError.h"
#include "platform/Whitespace.h"

namespace tabwright::actions {

class CreateWindow final : public WindowAction {
  using WindowType = CreateWindow_WindowTypeOption;

  Parameter<engine::TargetContext> targetContext{*this, shared::targetContext(services())};
  Parameter<WindowType> windowType{*this, {.name = "windowType", .defaultValue = WindowType::standardWindow}};
  Parameter<std::string> name{*this, {.name = "name", .presence = intents::Presence::optional, .example = "Work"}};
  Parameter<std::string> newURL{*this,
                                {.name = "newURL",
                                 .presence = intents::Presence::optional,
                                 .requestDialog = {{"What is the URL?"}},
                                 .example = "https://example.com/"}};
  Parameter<PauseOption> pauseAfterSucessInSeconds{*this, shared::pauseAfterSucessInSeconds()};

public:
  explicit CreateWindow(const ActionServices& services)
      : WindowAction(services, "CreateWindow", intents::tables::browserWindows, {}) {
    registerRuns(Registration::beforePreconditions);
    require([this] {
      if (!url().empty())
        requireUsableURL(newURL, url());
    });
    require([this] {
      if (!isSafari(*targetContext) && leavesItsLiteral())
        throw intents::UsageError("The name “" + *name.value() +
                                  "” can’t be given: a backslash in it must not stand before a quote or at the end. "
                                  "Write two backslashes for one.");
    });
    aimAt(targetContext);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise({{.sentence = {&windowType, &targetContext}, .further = {&name, &newURL, &pauseAfterSucessInSeconds}}});
  }

private:
  // As it was given; empty for none, and for a blank one.
  [[nodiscard]] std::string url() const {
    std::string text = newURL.value().value_or("");
    return platform::isBlank(text) ? std::string() : text;
  }

  [[nodiscard]] std::string scriptBody() const override {
    if (!isSafari(*targetContext))
      return chromiumBody();
    switch (*windowType) {
    case WindowType::privateWindow:
      // Without a private window the lines come to their end, which is failure 0.
      return engine::joinedLines(
          {"activate\n"
           "if my __createPrivateWindow() then\n"
           "  delay 0.4",
           engine::AppleScriptSnippets::frontVariables(),
           url().empty() ? "" : "set URL of FRONT_TAB to \"" + engine::escapeForLiteral(url()) + "\"",
           "  return success(my makeBrowserWindowData(FRONT_WINDOW))\n"
           "end if"});
    case WindowType::standardWindow:
      return engine::joinedLines(
          {"activate",
           url().empty() ? "make document"
                         : "make document with properties {URL: \"" + engine::escapeForLiteral(url()) + "\"}",
           "return success(my makeBrowserWindowData(front window))"});
    }
    return {};
  }

  [[nodiscard]] std::string chromiumBody() const {
    const std::string mode = *windowType == WindowType::privateWindow ? "incognito" : "normal";
    return engine::joinedLines(
        {"set nativeWindow to make window with properties {   mode: \"" + mode + "\",   given name: \"" +
             nameWithEscapedQuotes() +
             "\" }\n"
             "delay 0.2",
         url().empty() ? "" : "set URL of first tab in nativeWindow to \"" + engine::escapeForLiteral(url()) + "\"",
         "return success(my makeBrowserWindowData(nativeWindow))"});
  }

  // Quotes of the name are escaped and its backslashes are not, so they begin escapes of the literal's own: what would
  // undo the escape of a quote, or end the literal too late, must not get into the program.
  [[nodiscard]] bool leavesItsLiteral() const {
    const std::string text = name.value().value_or("");
    bool isEscaping = false;
    for (const char c : text) {
      if (isEscaping && c == '"')
        return true;
      isEscaping = c == '\\' && !isEscaping;
    }
    return isEscaping;
  }

  [[nodiscard]] std::string nameWithEscapedQuotes() const {
    std::string escaped;
    for (const char c : name.value().value_or("")) {
      if (c == '"')
        escaped += '\\';
      escaped += c;
    }
    return escaped;
  }

  [[nodiscard]] browserdata::BrowserWindowEntity result(browserdata::BrowserWindowData answer,
                                                        const engine::TargetContext& browser) const override {
    browserdata::BrowserWindowEntity window(answer, browser);
    const std::string givenName = name.value().value_or("");
    if (isSafari(*targetContext) && !givenName.empty() && services().windowNames)
      services().windowNames->set(window.fullID, givenName);
    return window;
  }
};

template std::unique_ptr<ActionFrame> makeAction<CreateWindow>(const ActionServices&);

} // namespace tabwright::actions
