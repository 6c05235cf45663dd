#pragma once

#include "actions/ActionFrame.h"
#include "actions/enums/FormFieldSelectionOption.h"
#include "actions/enums/PauseOption.h"
#include "actions/enums/TabSelectionOption.h"
#include "browserdata/BrowserTabEntity.h"
#include "browserdata/BrowserWindowEntity.h"
#include "engine/TargetContext.h"
#include "intents/Parameter.h"
#include "targets/ApplicationTarget.h"

#include <string>

/// The parameters that several actions have under one name, each declared once. Their texts lie in the table "Intents",
/// those of `formFieldSelection` in "Intents-Web Pages".
namespace tabwright::actions::shared {

/// The descriptions of which `targetContext` carries one.
enum class TargetDescription { plain, tabSelection, targetWindow };

[[nodiscard]] intents::ParameterSpec<engine::TargetContext>
targetContext(const ActionServices& services, TargetDescription description = TargetDescription::plain);
/// `targetContext` of actions on whichever application.
[[nodiscard]] intents::ParameterSpec<targets::ApplicationTarget> targetApplication(const ActionServices& services);
[[nodiscard]] intents::ParameterSpec<TabSelectionOption> tabSelection();
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserTabEntity> targetTab();
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserWindowEntity> targetWindow();
/// `targetTab` of actions that take nothing but a tab: it must have a value, and its description is the action's own.
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserTabEntity> requiredTab();
/// `targetWindow` of actions that take nothing but a window. Title and description are the action's own.
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserWindowEntity> requiredWindow();
[[nodiscard]] intents::ParameterSpec<std::string> cssSelector();
[[nodiscard]] intents::ParameterSpec<PauseOption> pauseAfterSucessInSeconds();
[[nodiscard]] intents::ParameterSpec<FormFieldSelectionOption> formFieldSelection();
[[nodiscard]] intents::ParameterSpec<bool> shouldFireChangeEvent();
[[nodiscard]] intents::ParameterSpec<bool> shouldSubmitParentForm();

/// The behaviour of fields for selectors, labels, field names and code, which keep what is typed as it was typed.
[[nodiscard]] intents::TextInputOptions literalInput();

} // namespace tabwright::actions::shared
