// The dependences are gone through once, in their declared order. The first given parameter that needs a choice makes
// it, and all others must agree with it; a choice that the caller made is never changed, only held against the rest.
#include "host/OpenChoices.h"

#include "intents/UsageError.h"

#include <fmt/core.h>

#include <map>

namespace tabwright::host {

using intents::Dependence;
using intents::UsageError;

namespace {

UsageError uncounted(const Dependence& dependence) {
  const auto& [parameter, condition, counts] = dependence;
  const std::string& selection = condition.parameter->name();
  if (counts == Dependence::Counts::unlessItHolds)
    return UsageError(fmt::format("{} doesn't count while {} is {}: give {}, too.", parameter->name(), selection,
                                  condition.caseName, selection));
  const std::string now(condition.parameter->json().as_string());
  return UsageError(fmt::format("{} counts only while {} is {}, and it is {}: leave one of the two out.",
                                parameter->name(), selection, condition.caseName, now));
}

UsageError contradicting(const Dependence& one, const Dependence& other) {
  return UsageError(fmt::format("{} and {} can't both be given: one needs the {} {}, the other {}. Leave one out.",
                                one.parameter->name(), other.parameter->name(), one.condition.parameter->name(),
                                one.condition.caseName, other.condition.caseName));
}

} // namespace

void settleOpenChoices(intents::Intent& action, const GivenParameters& given) {
  std::map<const intents::ParameterBase*, const Dependence*> settled; // a choice, and what settled it
  for (const Dependence& dependence : action.dependences()) {
    const intents::ParameterBase* const choice = dependence.condition.parameter;
    if (!given.contains(dependence.parameter))
      continue;
    // Any case but one would do, so there is none to choose for the caller.
    if (dependence.counts == Dependence::Counts::unlessItHolds) {
      if (dependence.condition.holds() && !given.contains(choice))
        throw uncounted(dependence);
    } else if (given.contains(choice)) {
      if (!dependence.condition.holds())
        throw uncounted(dependence);
    } else if (const auto [place, isNew] = settled.emplace(choice, &dependence); isNew) {
      action.findParameter(choice->name())->setJson(boost::json::value(dependence.condition.caseName));
    } else if (place->second->condition.caseName != dependence.condition.caseName) {
      throw contradicting(*place->second, dependence);
    }
  }
}

} // namespace tabwright::host
