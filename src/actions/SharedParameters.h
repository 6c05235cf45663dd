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

/// The browser to work in; its default is that of the provider of the services.
[[nodiscard]] intents::ParameterSpec<engine::TargetContext>
targetContext(const ActionServices& services, TargetDescription description = TargetDescription::plain);
/// `targetContext` of actions on whichever application.
[[nodiscard]] intents::ParameterSpec<targets::ApplicationTarget> targetApplication(const ActionServices& services);
/// The front tab unless the user says otherwise.
[[nodiscard]] intents::ParameterSpec<TabSelectionOption> tabSelection();
/// A tab, optional as such: it is needed while another parameter chooses it (`ActionFrame::takeTargetFrom`).
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserTabEntity> targetTab();
/// A window, in the same way.
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserWindowEntity> targetWindow();
/// `targetTab` of actions that take nothing but a tab: it must have a value, and its description is the action's own.
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserTabEntity> requiredTab();
/// `targetWindow` of actions that take nothing but a window. Title and description are the action's own.
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserWindowEntity> requiredWindow();
/// A selector as CSS has it, handed to the page as it was typed.
[[nodiscard]] intents::ParameterSpec<std::string> cssSelector();
/// The pause after a success; none by default. The name keeps its spelling, by which users and workflows know it.
[[nodiscard]] intents::ParameterSpec<PauseOption> pauseAfterSucessInSeconds();
/// The way in which a text names a field; by the attribute `name` unless the user says otherwise.
[[nodiscard]] intents::ParameterSpec<FormFieldSelectionOption> formFieldSelection();
/// Off by default: the page isn't told that the field has changed.
[[nodiscard]] intents::ParameterSpec<bool> shouldFireChangeEvent();
/// Off by default: the form that holds the field stays as it is.
[[nodiscard]] intents::ParameterSpec<bool> shouldSubmitParentForm();

/// The behaviour of fields for selectors, labels, field names and code, which keep what is typed as it was typed.
[[nodiscard]] intents::TextInputOptions literalInput();

} // namespace tabwright::actions::shared
