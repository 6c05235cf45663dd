#pragma once

#include "intents/Intent.h"

#include <set>

namespace tabwright::host {

/// The parameters that a caller has given a value.
using GivenParameters = std::set<const intents::ParameterBase*>;

/// Settles the choices that a caller left open by what the caller did give: `targetTab` without `tabSelection` chooses
/// the specific tab. Follows the dependences that actions declare.
///
/// Throws `intents::UsageError` where a parameter was given that wouldn't count: the choice says otherwise, two
/// parameters need different choices, or the choice is the caller's to make. `given` holds parameters of `action`. Some
/// choices may be settled when it throws.
void settleOpenChoices(intents::Intent& action, const GivenParameters& given);

} // namespace tabwright::host
