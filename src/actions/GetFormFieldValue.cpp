// Reads the value of a form field of a page. A field that isn't there has the empty value.
#include "actions/ActionList.h"
#include "actions/NamedField.h"
#include "actions/PageJob.h"
#include "actions/ScriptAction.h"
#include "engine/ScriptText.h"

#include <fmt/core.h>

namespace tabwright::actions {

class GetFormFieldValue final : public ScriptAction<std::vector<std::string>, std::string> {
  TabTarget tab{*this, services(), shared::TargetDescription::plain};
  Parameter<FormFieldSelectionOption> formFieldSelection{*this, shared::formFieldSelection()};
  Parameter<std::string> fieldTargetSpec{
      *this,
      {.name = "fieldTargetSpec",
       .requestDialog = {{"intent.GetFormFieldValue.parameter.fieldTargetSpec.requestValueDialog",
                          std::string(intents::tables::webPages)}},
       .textInput = shared::literalInput(),
       .example = "email"}};

public:
  explicit GetFormFieldValue(const ActionServices& services)
      : ScriptAction(services, "GetFormFieldValue", intents::tables::webPages, {.readsOnly = true}) {
    requireText(fieldTargetSpec);
    aimAtTab(tab);
    summarise(tab.summary({&formFieldSelection, &fieldTargetSpec}));
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    const std::string strategy(intents::enumCase(*formFieldSelection).rawValue);
    const NamedField field(*fieldTargetSpec, *formFieldSelection);
    return pageJob(tab, field.known("return [\n  getFormFieldValue(\n    \"" + engine::escapeForJavascript(field.text) +
                                    "\",\n    \"" + strategy + "\"\n  )\n]"));
  }

  [[nodiscard]] std::string result(std::vector<std::string> answer,
                                   const engine::TargetContext& /*browser*/) const override {
    return answerOf(answer);
  }

  [[nodiscard]] std::optional<platform::Notice> noticeOf(const std::vector<std::string>& answer) const override {
    if (answer.size() != 1 || !answer.front().empty())
      return std::nullopt;
    return platform::Notice{
        {"Notice", "noValue", {}},
        fmt::format("Nothing was read: no field of the page matches “{}”, or it is empty.", *fieldTargetSpec)};
  }
};

template std::unique_ptr<ActionFrame> makeAction<GetFormFieldValue>(const ActionServices&);

} // namespace tabwright::actions
