#pragma once

#include "actions/ActionFrame.h"
#include "actions/enums/PauseOption.h"
#include "actions/enums/TabSelectionOption.h"
#include "browserdata/BrowserTabEntity.h"
#include "browserdata/BrowserWindowEntity.h"
#include "engine/TargetContext.h"
#include "intents/Parameter.h"
#include "targets/TargetContextValue.h"

#include <string>

/// The parameters that several actions have under one name, each declared once. Their texts lie in the table "Intents".
namespace tabwright::actions::shared {

/// Which of its descriptions `targetContext` carries.
enum class TargetDescription { plain, tabSelection, targetWindow };

[[nodiscard]] intents::ParameterSpec<engine::TargetContext>
targetContext(const ActionServices& services, TargetDescription description = TargetDescription::plain);
[[nodiscard]] intents::ParameterSpec<TabSelectionOption> tabSelection();
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserTabEntity> targetTab();
[[nodiscard]] intents::ParameterSpec<browserdata::BrowserWindowEntity> targetWindow();
[[nodiscard]] intents::ParameterSpec<std::string> cssSelector();
[[nodiscard]] intents::ParameterSpec<PauseOption> pauseAfterSucessInSeconds();

/// How fields for selectors, labels, field names and code behave: what is typed stays as it was typed.
[[nodiscard]] intents::TextInputOptions literalInput();

} // namespace tabwright::actions::shared
