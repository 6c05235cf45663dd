// Runs JavaScript of the user's own as the body of a page job and gives what it returns. Code with a mistake in its
// syntax is refused before the run counts; an exception of running code is a result like any other, its text.
#include "actions/ActionList.h"
#include "actions/PageJob.h"
#include "actions/ScriptAction.h"
#include "engine/AppleScriptSnippets.h"
#include "engine/errors/JavascriptError.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>

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

  /// Results that hide what the code did: they are told beside the result, or beneath the failure.
  [[nodiscard]] std::optional<platform::Notice> noticeOf(const std::vector<std::string>& answer) const override {
    const auto notice = [](std::string caseName, std::string sentence) {
      return platform::Notice{{"Notice", std::move(caseName), {}}, std::move(sentence)};
    };
    if (answer.empty())
      return notice("emptyList", "The code returned an empty list, which counts as no answer. Return it as text: "
                                 "return JSON.stringify(…)");
    if (answer.size() > 1)
      return std::nullopt;
    const std::string& only = answer.front();
    if (only == engine::AppleScriptSnippets::emptyResultMarker()) {
      // Code that neither calls nor sets anything was written for its value.
      if (jsCode->find_first_of("(=") == std::string::npos && jsCode->find("return") == std::string::npos)
        return notice("noValue", "The code returned nothing: “return” belongs before the value.");
      return std::nullopt;
    }
    if (only.empty())
      return notice("noText", "The code returned an empty text, or an object, which has no text. Return that as text: "
                              "return JSON.stringify(…)");
    if (readsAsException(only))
      return notice("exception", "The result reads as an exception that the code threw.");
    return std::nullopt;
  }

  /// "TypeError: …": a name that ends in Error or Exception, and a colon.
  static bool readsAsException(std::string_view text) {
    const std::string_view name = text.substr(0, text.find(':'));
    return name.size() < text.size() && (name.ends_with("Error") || name.ends_with("Exception")) &&
           std::ranges::all_of(name, [](unsigned char c) { return std::isalpha(c) != 0; });
  }

  [[nodiscard]] std::vector<std::string> result(std::vector<std::string> answer,
                                                const engine::TargetContext& /*browser*/) const override {
    // Nothing returned is one empty text, never the marker.
    if (answerOf(answer) == engine::AppleScriptSnippets::emptyResultMarker())
      return {""};
    return answer;
  }
};

template std::unique_ptr<ActionFrame> makeAction<RunJavascriptInTab>(const ActionServices&);

} // namespace tabwright::actions
