// Runs JavaScript of the user's own as the body of a page job and gives what it returns. Code with a mistake in its
// syntax is refused before the run counts; an exception of running code is a result like any other, its text.
#include "actions/ActionList.h"
#include "actions/PageJob.h"
#include "actions/ScriptAction.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/errors/JavascriptError.h"

namespace tabwright::actions {

class RunJavascriptInTab final : public ScriptAction<std::vector<std::string>, std::vector<std::string>> {
  TabTarget tab{*this, services()};
  Parameter<std::string> jsCode{*this,
                                {.name = "jsCode",
                                 .requestDialog = {{"Please enter the Javascript code you want to run."}},
                                 .textInput = shared::literalInput(),
                                 .example = "return document.title"}};

public:
  explicit RunJavascriptInTab(const ActionServices& services)
      : ScriptAction(services, "RunJavascriptInTab", intents::tables::webPages, {.destroys = true}) {
    requireText(jsCode);
    aimAtTab(tab);
    require([this] {
      if (const auto exception = this->services().javascriptValidator.validateJavascript(*jsCode))
        throw platform::failure(engine::JavascriptError::syntaxException, *exception);
    });
    summarise(tab.summary({&jsCode}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override { return pageJob(tab, *jsCode); }

  [[nodiscard]] std::vector<std::string> result(std::vector<std::string> answer,
                                                const engine::TargetContext& /*browser*/) const override {
    if (answerOf(answer) == engine::AppleScriptSnippets::emptyResultMarker())
      return {""};
    return answer;
  }
};

template std::unique_ptr<ActionFrame> makeAction<RunJavascriptInTab>(const ActionServices&);

} // namespace tabwright::actions
