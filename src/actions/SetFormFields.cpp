// Sets several form fields of a page from a JSON document: field names and their values. The document, normalised,
// stands in the job as the JavaScript literal that it is.
#include "actions/ActionList.h"
#include "actions/NamedElement.h"
#include "actions/PageJob.h"
#include "actions/enums/SetFormFieldsOptions.h"
#include "intents/IntentFile.h"
#include "platform/JSONFailure.h"
#include "platform/JSONText.h"
#include "platform/NormalisedJSON.h"

namespace tabwright::actions {

class SetFormFields final : public PageAttempt {
  using Selection = SetFormFields_FormFieldsSelectionOption;

  TabTarget tab{*this, services()};
  Parameter<Selection> formFieldsSelection{
      *this, {.name = "formFieldsSelection", .defaultValue = Selection::elementNameAttribute}};
  Parameter<intents::IntentFile> inputDict{
      *this,
      {.name = "inputDict",
       .requestDialog = {{"intent.SetFormFields.parameter.inputDict.requestValueDialog",
                          std::string(intents::tables::webPages)}},
       .example = R"({"email":"ann@example.com","newsletter":"yes"})"}};
  Parameter<bool> shouldFireChangeEvent{*this, shared::shouldFireChangeEvent()};
  Parameter<bool> shouldSubmitParentForm{*this, shared::shouldSubmitParentForm()};
  Parameter<PauseOption> pauseAfterSucessInSeconds{*this, shared::pauseAfterSucessInSeconds()};

public:
  explicit SetFormFields(const ActionServices& services)
      : PageAttempt(services, "SetFormFields", intents::tables::webPages, {.destroys = true}) {
    aimAtTab(tab);
    pauseAfterSuccess(pauseAfterSucessInSeconds);
    summarise(tab.summary({&formFieldsSelection, &inputDict}, {},
                          {&shouldFireChangeEvent, &shouldSubmitParentForm, &pauseAfterSucessInSeconds}));
  }

private:
  [[nodiscard]] std::string document() const {
    try {
      // Written anew rather than as it was given, so nothing but JSON gets into the job.
      return platform::normalisedJSON(inputDict->data);
    } catch (const platform::JSONFailure& failure) {
      // Named by the parameter, as the user knows the document.
      throw failure.named(inputDict.name());
    }
  }

  [[nodiscard]] static std::vector<std::string> namesIn(const std::string& fields) {
    std::vector<std::string> names;
    const boost::json::value json = platform::parseJSON(fields);
    if (const boost::json::object* object = json.if_object()) {
      for (const auto& [name, value] : *object)
        names.emplace_back(name);
    }
    return names;
  }

  [[nodiscard]] std::string scriptBody() const override {
    const std::string strategy(intents::enumCase(*formFieldsSelection).rawValue);
    const std::string fields = document();
    std::string javascript = "return [\n  setFormFields(\n    " + fields + ",\n    \"" + strategy + "\",\n    " +
                             javascriptText(*shouldFireChangeEvent) + ",\n    " +
                             javascriptText(*shouldSubmitParentForm) + "\n  )\n]";
    // Selectors may be references and names, as those of single fields.
    if (*formFieldsSelection == Selection::cssSelector)
      javascript = withNamedElements(namesIn(fields), std::move(javascript));
    return pageJob(tab, javascript);
  }

  [[nodiscard]] std::optional<platform::Notice> noticeOf(const std::vector<std::string>& answer) const override {
    return noticeOfNothing(answer, "Not every field was set",
                           {"notSet", "the page lacks one of them, or it takes no such value"});
  }
};

template std::unique_ptr<ActionFrame> makeAction<SetFormFields>(const ActionServices&);

} // namespace tabwright::actions
