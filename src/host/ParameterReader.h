#pragma once

#include "host/OpenChoices.h"
#include "intents/Intent.h"

#include <boost/json/object.hpp>

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tabwright::host {

/// Parameters as a command line gives them: names and texts.
using ParameterTexts = std::vector<std::pair<std::string, std::string>>;

/// Parameters of one run, from either kind of front end.
using ParameterValues = std::variant<ParameterTexts, boost::json::object>;

/// Fills an action's parameters; those not named keep their defaults, as do those given as JSON null.
///
/// A text parameter takes a text as it is; enums take the name of a case or its raw value; booleans true, false, yes,
/// no, 1 and 0 as texts; a browser its short name, name, id or object; tabs and windows the JSON that an action
/// printed, or an object of at least `fullID` and `targetContext`. JSON values must have the JSON type of the
/// parameter.
///
/// Throws `intents::UsageError`, having set some parameters and not others, for a name that the action doesn't have
/// (with the nearest ones it has), a name given twice, a value that doesn't fit (with what may stand there), and a
/// value that wouldn't count (as `settleOpenChoices` tells). Names go by letters; their case doesn't count.
void readParameters(intents::Intent& action, const ParameterValues& values);

/// The same of some values by themselves, whatever the others come to: choices that they leave open stay open. Yields
/// the parameters that were given a value, without those given as null. For checks that know only part of the values.
GivenParameters readParameterValues(intents::Intent& action, const ParameterValues& values);

} // namespace tabwright::host
