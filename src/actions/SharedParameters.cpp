// Texts that actions share have keys of their own scheme ("intent.general.parameter.NAME…"); whatever isn't given here
// follows by rule from the action's own name and table.
#include "actions/SharedParameters.h"

namespace tabwright::actions::shared {

namespace {

// Keys of the texts that actions share; by rule each action would have its own.
intents::LocalizedText generalKey(std::string_view parameter, std::string_view part) {
  return {"intent.general.parameter." + std::string(parameter) + "." + std::string(part),
          std::string(intents::tables::general)};
}

// A parameter whose title and description have keys of the shared scheme.
template <class T>
intents::ParameterSpec<T> generalParameter(std::string_view name, std::optional<T> defaultValue = {}) {
  intents::ParameterSpec<T> spec{.name = name, .defaultValue = std::move(defaultValue)};
  spec.title = generalKey(name, "title");
  spec.description = generalKey(name, "description");
  return spec;
}

std::string_view descriptionPart(TargetDescription description) {
  switch (description) {
  case TargetDescription::plain:
    return "description";
  case TargetDescription::tabSelection:
    return "description.variant.tabSelection";
  case TargetDescription::targetWindow:
    return "description.variant.targetWindow";
  }
  return {};
}

} // namespace

intents::ParameterSpec<engine::TargetContext> targetContext(const ActionServices& services,
                                                            TargetDescription description) {
  auto spec = generalParameter<engine::TargetContext>("targetContext");
  spec.description = generalKey("targetContext", descriptionPart(description));
  spec.requestDialog = {"requestValueDialog.targetContext", std::string(intents::tables::general)};
  spec.options = &services.browserTargets;
  return spec;
}

intents::ParameterSpec<targets::ApplicationTarget> targetApplication(const ActionServices& services) {
  auto spec = generalParameter<targets::ApplicationTarget>("targetContext");
  spec.description = generalKey("targetContext", "description.variant.application");
  spec.requestDialog = {"requestValueDialog.targetContext", std::string(intents::tables::general)};
  spec.options = &services.applicationTargets;
  spec.example = "org.xfce.mousepad";
  return spec;
}

intents::ParameterSpec<TabSelectionOption> tabSelection() {
  return generalParameter<TabSelectionOption>("tabSelection", TabSelectionOption::frontTab);
}

intents::ParameterSpec<browserdata::BrowserTabEntity> targetTab() {
  auto spec = generalParameter<browserdata::BrowserTabEntity>("targetTab");
  spec.presence = intents::Presence::optional;
  spec.requestDialog = generalKey("targetTab", "requestValueDialog");
  spec.example = "chromium:8";
  return spec;
}

intents::ParameterSpec<browserdata::BrowserWindowEntity> targetWindow() {
  auto spec = generalParameter<browserdata::BrowserWindowEntity>("targetWindow");
  spec.presence = intents::Presence::optional;
  spec.requestDialog = generalKey("targetWindow", "requestValueDialog");
  spec.example = "chromium:3";
  return spec;
}

intents::ParameterSpec<browserdata::BrowserTabEntity> requiredTab() {
  auto spec = targetTab();
  spec.presence = intents::Presence::required;
  spec.description.reset();
  return spec;
}

intents::ParameterSpec<browserdata::BrowserWindowEntity> requiredWindow() {
  auto spec = targetWindow();
  spec.presence = intents::Presence::required;
  // Without one here the text follows by rule, from the action's own table.
  spec.title.reset();
  spec.description.reset();
  return spec;
}

intents::ParameterSpec<std::string> cssSelector() {
  auto spec = generalParameter<std::string>("cssSelector");
  spec.requestDialog = generalKey("cssSelector", "requestValueDialog");
  spec.textInput = literalInput();
  spec.example = "button[type=submit]";
  return spec;
}

intents::ParameterSpec<PauseOption> pauseAfterSucessInSeconds() {
  return generalParameter<PauseOption>("pauseAfterSucessInSeconds", PauseOption::p00);
}

intents::ParameterSpec<FormFieldSelectionOption> formFieldSelection() {
  auto spec = generalParameter<FormFieldSelectionOption>("formFieldSelection");
  spec.title->table = intents::tables::webPages;
  spec.description->table = intents::tables::webPages;
  spec.defaultValue = FormFieldSelectionOption::elementNameAttribute;
  return spec;
}

intents::ParameterSpec<bool> shouldFireChangeEvent() {
  return generalParameter<bool>("shouldFireChangeEvent", false);
}

intents::ParameterSpec<bool> shouldSubmitParentForm() {
  return generalParameter<bool>("shouldSubmitParentForm", false);
}

intents::TextInputOptions literalInput() {
  return {.keyboardType = intents::TextInputOptions::KeyboardType::asciiCapable,
          .capitalization = intents::TextInputOptions::Capitalization::none,
          .multiline = false,
          .autocorrect = false,
          .smartQuotes = false,
          .smartDashes = false};
}

} // namespace tabwright::actions::shared
