// Goes through the steps in the order of the file, which is the order in which variables come to be, and keeps what
// type each has. A variable that only some branch gives counts as given: whether it was is known at the run.
#include "host/workflow/WorkflowCheck.h"

#include "host/NearestNames.h"
#include "host/ParameterReader.h"
#include "intents/EntityDeclaration.h"
#include "intents/UsageError.h"
#include "platform/Utf8.h"

#include <boost/json/parse.hpp>
#include <fmt/core.h>
#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace tabwright::host::workflow {

namespace json = boost::json;
using intents::ValueKind;
using intents::ValueType;

namespace {

/// Nothing where it can't be known.
using KnownType = std::optional<ValueType>;

bool isIndex(std::string_view member) {
  return std::ranges::all_of(member, [](char digit) { return digit >= '0' && digit <= '9'; });
}

class Check {
public:
  explicit Check(const Catalogue& catalogue) : catalogue_(catalogue) {}

  std::vector<Problem> problemsOf(const Workflow& workflow) {
    for (const NamedExpression& variable : workflow.variables)
      types_[variable.name.text] = std::nullopt;
    check(workflow.steps);
    return std::move(problems_);
  }

private:
  void complain(Place place, std::string sentence) { problems_.push_back({place, std::move(sentence)}); }

  void check(const Steps& steps) {
    for (const Step& step : steps) {
      if (step.title)
        check(*step.title);
      std::visit([this, &step](const auto& work) { check(work, step); }, step.work);
    }
  }

  void check(const ActionStep& step, const Step&) {
    types_[noticesVariable] = std::nullopt;
    try {
      // An action of its own: known values are read into it as the run would read them.
      const auto action = catalogue_.make(step.action.text);
      checkParameters(step, *action);
      if (!step.result)
        return;
      const ValueType type = action->resultType();
      if (type.kind == ValueKind::nothing)
        complain(step.result->place, action->name() + " gives no result.");
      else
        types_[step.result->text] = type;
    } catch (const intents::UsageError& error) {
      // An action that isn't known has any result, so that no step behind it is blamed.
      complain(step.action.place, error.errorDescription());
      if (step.result)
        types_[step.result->text] = std::nullopt;
    }
  }

  void check(const RepeatStep& step, const Step&) {
    const KnownType type = check(step.list);
    KnownType item;
    if (type && type->isList) {
      item = type;
      item->isList = false;
    } else if (type && type->kind != ValueKind::text) { // a text may hold a list in JSON
      complain(step.list.place, fmt::format("What is repeated over is a list; this is of type {}.", type->name()));
    } else if (const auto* value = std::get_if<json::value>(&step.list.form); value && !value->is_array()) {
      const std::string name(value->is_string() ? std::string_view(value->get_string()) : std::string_view());
      complain(step.list.place, "What is repeated over is a list." +
                                    (types_.contains(name) ? fmt::format(" The variable is ${{{}}}.", name) : ""));
    }
    types_[step.item.text] = item;
    // Once, as the first round finds the variables; a later one may find other values in them.
    check(step.steps);
  }

  void check(const IfStep& step, const Step&) {
    check(step.condition);
    check(step.then);
    check(step.otherwise);
  }

  void check(const TryStep& step, const Step&) {
    check(step.steps);
    // An object whose members depend on the failure.
    types_[errorVariable] = std::nullopt;
    check(step.otherwise);
  }

  void check(const SetStep& step, const Step&) {
    for (const NamedExpression& one : step.values)
      types_[one.name.text] = check(one.value);
  }

  void check(const AppendStep& step, const Step&) {
    check(step.value.value);
    requireVariable(step.value.name.text, step.value.name.place);
  }

  void check(const PrintStep& step, const Step&) { check(step.value); }

  void check(const Condition& condition) {
    check(condition.value);
    check(condition.other);
    for (const Condition& part : condition.parts)
      check(part);
  }

  // The type of an expression that is one path; nothing for others.
  KnownType check(const Expression& expression) {
    // Every path is checked, wherever it stands.
    KnownType last;
    forEachPath(expression, [&](const Path& path, Place place) { last = typeAt(path, place); });
    const auto* text = std::get_if<Expression::Text>(&expression.form);
    return text && text->pieces.size() == 1 ? last : std::nullopt;
  }

  bool requireVariable(const std::string& name, Place place) {
    if (types_.contains(name))
      return true;
    std::vector<std::string> names;
    names.reserve(types_.size());
    for (const auto& [known, type] : types_)
      names.push_back(known);
    complain(place, fmt::format("No earlier step gives “{}”.{}", name, didYouMean(name, names, "")));
    return false;
  }

  KnownType typeAt(const Path& path, Place place) {
    if (!requireVariable(path.variable, place))
      return std::nullopt;
    // From the first unknown type on, only the run can tell.
    KnownType type = types_.at(path.variable);
    std::string way = path.variable;
    for (const std::string& member : path.members) {
      if (!type)
        return std::nullopt;
      if (type->isList && !isIndex(member) && member != "count") {
        complain(place,
                 fmt::format("{} is a list: an item has its index, from 0, as in ${{{}.0}}, and “count” is their "
                             "number.",
                             way, way));
        return std::nullopt;
      }
      if (type->isList && member == "count")
        return ValueType{.kind = ValueKind::integer};
      // An index leads to an item.
      if (type->isList)
        type->isList = false;
      else
        type = typeOfMember(*type, member, way, place);
      way += "." + member;
    }
    return type;
  }

  KnownType typeOfMember(const ValueType& type, const std::string& member, const std::string& way, Place place) {
    if (type.kind == ValueKind::entity) {
      if (const intents::PropertyDeclaration* property = type.entity->find(member))
        return property->type;
      const std::vector<std::string> names = type.entity->propertyNames();
      complain(place, fmt::format("{}, a {}, has no “{}”.{}", way, type.name(), member,
                                  didYouMean(member, names, fmt::format(" It has {}.", fmt::join(names, ", ")))));
    } else if (type.kind != ValueKind::text && type.kind != ValueKind::file) { // a text may hold JSON
      complain(place, fmt::format("{} is of type {}, which has no members.", way, type.name()));
    }
    return std::nullopt;
  }

  void checkParameters(const ActionStep& step, actions::ActionFrame& action) {
    bool hasOpenChoice = false; // one whose value is known only when the step runs
    GivenParameters named;      // with whatever value
    GivenParameters given;
    for (const NamedExpression& parameter : step.parameters) {
      const intents::ParameterBase* const found = action.findParameter(parameter.name.text);
      const bool isKnown = found != nullptr;
      if (isKnown && !named.insert(found).second)
        complain(parameter.name.place, found->name() + " is given twice.");
      check(parameter.value);
      // Given, with a value that only the run can judge.
      if (isKnown && (hasPaths(parameter.value) || readsFile(*found, parameter.value))) {
        given.insert(found);
        hasOpenChoice = hasOpenChoice || found->declaration().type.kind == ValueKind::enumeration;
        continue;
      }
      try {
        if (const auto text = parameterText(found, parameter.value, isKnown))
          given.merge(readParameterValues(action, ParameterTexts{{parameter.name.text, *text}}));
      } catch (const intents::UsageError& error) {
        complain(isKnown ? parameter.value.place : parameter.name.place, error.errorDescription());
      }
    }
    try {
      // An open choice may turn out to fit whatever was given.
      if (!hasOpenChoice)
        settleOpenChoices(action, given);
    } catch (const intents::UsageError& error) {
      complain(step.action.place, error.errorDescription());
    }
    for (const intents::ParameterBase* missing : action.missingParameters()) {
      // While a choice is open only what every choice needs is known to be missing.
      const bool counts = !hasOpenChoice || action.isAlwaysNeeded(*missing);
      if (counts && !named.contains(missing))
        complain(step.action.place, missing->needsValueError().errorDescription());
    }
  }

  // Nothing for null, which leaves the default.
  static std::optional<std::string> parameterText(const intents::ParameterBase* parameter, const Expression& value,
                                                  bool isKnown) {
    const json::value known = evaluate(value, {});
    if (known.is_null())
      return std::nullopt;
    if (isKnown && parameter->declaration().type.kind == ValueKind::text && known.is_structured())
      throw intents::UsageError(
          fmt::format("{} is a text, not {}.", parameter->name(), known.is_array() ? "a list" : "a map"));
    return textOf(known);
  }

  const Catalogue& catalogue_;
  std::map<std::string, KnownType> types_;
  std::vector<Problem> problems_;
};

} // namespace

void checkWorkflow(const Workflow& workflow, const Catalogue& catalogue) {
  std::vector<Problem> problems = Check(catalogue).problemsOf(workflow);
  if (!problems.empty())
    throw InvalidWorkflow(std::move(problems));
}

Variables firstVariables(const Workflow& workflow, const std::map<std::string, std::string>& given) {
  Variables variables;
  std::vector<std::string> names;
  for (const NamedExpression& one : workflow.variables) {
    names.push_back(one.name.text);
    json::value value = evaluate(one.value, {});
    // In place of a number or a boolean a text does as well: parameters read texts.
    if (const auto text = given.find(one.name.text); text != given.end()) {
      if (platform::malformedByte(text->second))
        throw intents::UsageError(fmt::format("The variable “{}” takes text in UTF-8.", one.name.text));
      boost::system::error_code error;
      const bool isStructured = value.is_structured();
      // A command line gives texts; only a list or a map can't be meant by one.
      value = isStructured ? json::parse(text->second, error) : json::value(text->second);
      if (error || value.is_structured() != isStructured)
        throw intents::UsageError(fmt::format("The variable “{}” is a list or a map: give it as JSON.", one.name.text));
    }
    if (value.is_null())
      throw intents::UsageError(fmt::format("The workflow needs a value of “{}”: give it with --set {}=VALUE.",
                                            one.name.text, one.name.text));
    variables[one.name.text] = std::move(value);
  }
  for (const auto& [name, text] : given) {
    if (!variables.contains(name))
      throw intents::UsageError(fmt::format("The workflow has no variable “{}”.{}", name, didYouMean(name, names, "")));
  }
  return variables;
}

} // namespace tabwright::host::workflow
