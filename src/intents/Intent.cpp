// Parameters enter themselves into their action's list while they are constructed, in the order of the class's members;
// what their declaration leaves out is filled in here, where the action's name and table are known.
#include "intents/Intent.h"

#include "platform/AsciiCase.h"
#include "platform/StringCatalogue.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace tabwright::intents {

std::string LocalizedText::text() const {
  return platform::localized(key, table);
}

ParameterBase::ParameterBase(Intent& owner, ParameterDeclaration declaration) : declaration_(std::move(declaration)) {
  const std::string prefix = "intent." + owner.name() + ".parameter." + declaration_.name;
  if (declaration_.title.key.empty())
    declaration_.title = {prefix + ".title", owner.table()};
  if (declaration_.description.key.empty())
    declaration_.description = {prefix + ".description", owner.table()};
  owner.parameters_.push_back(this);
}

NeedsValue ParameterBase::needsValueError() const {
  const std::string question = declaration_.requestDialog
                                   ? declaration_.requestDialog->text()
                                   : platform::localizedFormat("parameter.question", {declaration_.title.text()});
  return {name(), question};
}

bool SummaryRow::shows(const ParameterBase& parameter) const {
  return std::ranges::find(sentence, &parameter) != sentence.end() ||
         std::ranges::find(further, &parameter) != further.end();
}

const SummaryRow& Summary::current() const {
  // `summarise` has made sure of a last row that always holds.
  return *std::ranges::find_if(
      rows, [](const SummaryRow& row) { return std::ranges::all_of(row.when, &SummaryCondition::holds); });
}

LocalizedText Intent::title() const {
  return {"intent." + name_ + ".title.betaBuild", table_};
}

const ParameterBase* Intent::findParameter(std::string_view name) const {
  const auto found = std::ranges::find_if(parameters_, [name](const ParameterBase* parameter) {
    return platform::equalIgnoringCase(parameter->name(), name);
  });
  return found == parameters_.end() ? nullptr : *found;
}

ParameterBase* Intent::findParameter(std::string_view name) {
  // The list holds pointers that aren't const, so nothing that was const loses it.
  return const_cast<ParameterBase*>(std::as_const(*this).findParameter(name));
}

LocalizedText Intent::summaryText(const SummaryRow& row) const {
  return {"intent." + name_ + ".parameterSummary" + (row.key.empty() ? " " : "." + row.key + " "), table_};
}

std::vector<const ParameterBase*> Intent::missingParameters() const {
  const SummaryRow& row = summary_.current();
  std::vector<const ParameterBase*> missing;
  std::ranges::copy_if(parameters_, std::back_inserter(missing), [&](const ParameterBase* parameter) {
    // One that the sentence doesn't show isn't looked at, so it can't be missing.
    return parameter->declaration().presence == Presence::required && !parameter->hasValue() && row.shows(*parameter);
  });
  return missing;
}

const ParameterBase* Intent::missingParameter() const {
  const std::vector<const ParameterBase*> missing = missingParameters();
  return missing.empty() ? nullptr : missing.front();
}

bool Intent::isAlwaysNeeded(const ParameterBase& parameter) const {
  return parameter.declaration().presence == Presence::required && !parameter.hasValue() &&
         std::ranges::all_of(summary_.rows, [&](const SummaryRow& row) { return row.shows(parameter); });
}

void Intent::summarise(std::vector<SummaryRow> rows) {
  // A mistake of the action's class, which the first test that makes it finds.
  if (rows.empty() || !rows.back().when.empty())
    throw std::logic_error(name_ + ": the last row of a summary has no condition");
  summary_.rows = std::move(rows);
}

} // namespace tabwright::intents
