#pragma once

#include "actions/ActionFrame.h"
#include "actions/enums/KeyboardModifiersStatus.h"
#include "automation/KeyboardModifiers.h"

#include <string>
#include <string_view>

namespace tabwright::actions {

/// The parameters that both keyboard actions have. Their texts lie in the table "Intents-Browsers".
namespace keyboardparameters {

/// Disabled unless the user says so. Agents aren't offered it: the modifiers themselves say enough.
[[nodiscard]] intents::ParameterSpec<KeyboardModifiersStatus> modifiersStatus();
/// "modCmd" and the like: not pressed, unless the user says so.
[[nodiscard]] intents::ParameterSpec<bool> modifier(std::string_view name);
[[nodiscard]] intents::ParameterSpec<bool> functionModifier(); ///< "modFn"

} // namespace keyboardparameters

} // namespace tabwright::actions
