#pragma once

#include "intents/LocalizedText.h"
#include "intents/Parameter.h"

#include <boost/json/value.hpp>

#include <functional>
#include <string>
#include <vector>

namespace tabwright::intents {

/// True while an enum parameter has a certain case. The parameter outlives the condition: both belong to one action.
struct SummaryCondition {
  const ParameterBase* parameter;
  std::string caseName;

  [[nodiscard]] bool holds() const { return parameter->json() == boost::json::value(caseName); }
};

/// The condition that `parameter` has the case `value`, as rows and dependences name it:
///
///     {.when = {is(tabSelection, TabSelectionOption::specificTab)}, .sentence = {&cssSelector, &targetTab}}
template <DeclaredEnum Enum>
[[nodiscard]] SummaryCondition is(const Parameter<Enum>& parameter, Enum value) {
  return {&parameter, std::string(enumCase(value).name)};
}

/// A parameter that an action looks at only while another one has a certain case, or any case but that one: `targetTab`
/// counts while `tabSelection` is `specificTab`.
struct Dependence {
  /// A choice that a dependence needs to hold can be made for the caller; one that it needs not to hold can't, as
  /// several cases would do.
  enum class Counts { whileItHolds, unlessItHolds };

  const ParameterBase* parameter;
  SummaryCondition condition;
  Counts counts = Counts::whileItHolds;
};

/// One form of an action's summary.
struct SummaryRow {
  std::vector<SummaryCondition> when{};         ///< all must hold; none stands for always
  std::string key{};                            ///< the last part of the sentence's key: "tabSelection.specificTab"
  std::vector<const ParameterBase*> sentence{}; ///< stand in the sentence, as ${name}
  std::vector<const ParameterBase*> further{};  ///< shown beside it

  /// True for a parameter of the sentence or beside it: only such a one can be missing.
  [[nodiscard]] bool shows(const ParameterBase& parameter) const;
};

/// The sentence that tells what an action will do, with its parameters in it, and which parameters count at all for the
/// values of others. The first row whose conditions hold is the one; the last row has no condition.
struct Summary {
  std::vector<SummaryRow> rows;

  /// The row for the values as they are. There is one once the action's constructor has ended.
  [[nodiscard]] const SummaryRow& current() const;
};

} // namespace tabwright::intents
