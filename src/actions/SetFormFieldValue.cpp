// Sets a form field of a page. The value travels as a template literal, which may go over several lines; `${` is left
// as it is and means to the page what it means in any template literal.
#include "actions/ActionList.h"
#include "actions/NamedField.h"
#include "actions/PageJob.h"
#include "engine/ScriptText.h"

#include <fmt/core.h>

namespace tabwright::actions {

namespace {

// The text between the backticks of a template literal.
std::string escapeForTemplate(const std::string& text) {
  std::string escaped;
  // Line feeds may stand in a template literal as they are.
  for (const char character : engine::escapeForLiteral(text)) {
    if (character == '`')
      escaped += '\\';
    escaped += character;
  }
  return escaped;
}

} // namespace

class SetFormFieldValue final : public PageAttempt {
  TabTarget tab{*this, services()};
  Parameter<FormFieldSelectionOption> formFieldSelection{*this, shared::formFieldSelection()};
  Parameter<std::string> targetField{*this,
                                     {.name = "targetField",
                                      .requestDialog = {{"Please specify the form field"}},
                                      .textInput = shared::literalInput(),
                                      .example = "email"}};
  Parameter<std::string> newValue{
      *this, {.name = "newValue", .requestDialog = {{"Please specify the new value"}}, .example = "ann@example.com"}};
  Parameter<bool> shouldFireChangeEvent{*this, shared::shouldFireChangeEvent()};
  Parameter<bool> shouldSubmitParentForm{*this, shared::shouldSubmitParentForm()};
  Parameter<PauseOption> pauseAfterSucessInSeconds{*this, shared::pauseAfterSucessInSeconds()};

public:
  explicit SetFormFieldValue(const ActionServices& services)
      : PageAttempt(services, "SetFormFieldValue", intents::tables::webPages, {.destroys = true}) {
    requireText(targetField);
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise(tab.summary({&formFieldSelection, &targetField, &newValue}, {},
                          {&shouldFireChangeEvent, &shouldSubmitParentForm, &pauseAfterSucessInSeconds}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    const std::string strategy(intents::enumCase(*formFieldSelection).rawValue);
    const NamedField field(*targetField, *formFieldSelection);
    return pageJob(tab, field.known("return [\n  setFormFieldValue(\n    \"" + engine::escapeForJavascript(field.text) +
                                    "\",\n    \"" + strategy + "\",\n    `" + escapeForTemplate(*newValue) +
                                    "`,\n    " + javascriptText(*shouldFireChangeEvent) + ",\n    " +
                                    javascriptText(*shouldSubmitParentForm) + "\n  )\n]"));
  }

  [[nodiscard]] std::optional<platform::Notice> noticeOf(const std::vector<std::string>& answer) const override {
    return noticeOfNothing(
        answer, "Nothing was set",
        {"notSet", fmt::format("no field of the page matches “{}”, or it takes no such value", *targetField)});
  }
};

template std::unique_ptr<ActionFrame> makeAction<SetFormFieldValue>(const ActionServices&);

} // namespace tabwright::actions
