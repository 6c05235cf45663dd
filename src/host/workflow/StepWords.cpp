// The questions about a step are visits over its kinds: those that each kind must answer don't compile when one is
// added. An outline is written before anything runs: a variable that some step gives is taken for unknown throughout,
// and stands in it as the file has it.
#include "host/workflow/StepWords.h"

#include <boost/json/object.hpp>
#include <fmt/core.h>

#include <set>
#include <string_view>

namespace tabwright::host::workflow {

namespace {

// One function of several, for std::visit.
template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};

bool areKnown(const Expression& expression, const Variables& variables) {
  bool all = true;
  forEachPath(expression, [&](const Path& path, Place) { all = all && variables.contains(path.variable); });
  return all;
}

std::string shown(const Expression& expression, const Variables& variables) {
  try {
    // A tab or window is shown by its reference alone.
    // Evaluated only where nothing can be missing: else the paths are shown as they stand.
    const bool isKnown = hasPaths(expression) && areKnown(expression, variables);
    const boost::json::value value = isKnown ? evaluate(expression, variables) : boost::json::value(nullptr);
    const auto* entity = value.if_object();
    const auto* reference = entity ? entity->if_contains("fullID") : nullptr;
    return reference ? textOf(*reference) : preview(expression, variables);
  } catch (const Problem&) { // a way that the value doesn't have: the run will say so
    return preview(expression, {});
  }
}

std::string shown(const std::vector<NamedExpression>& values, const Variables& variables) {
  std::string all;
  for (const NamedExpression& one : values)
    all += (all.empty() ? "" : ", ") + one.name.text + ": " + shown(one.value, variables);
  return all;
}

std::string shown(const Condition& condition, const Variables& variables) {
  const auto joined = [&](std::string_view word) {
    std::string all;
    for (const Condition& part : condition.parts)
      all += (all.empty() ? std::string() : fmt::format(" {} ", word)) + shown(part, variables);
    return "(" + all + ")";
  };
  switch (condition.kind) {
  case Condition::Kind::isTrue:
    return shown(condition.value, variables);
  case Condition::Kind::equals:
    return shown(condition.value, variables) + " equals " + shown(condition.other, variables);
  case Condition::Kind::contains:
    return shown(condition.value, variables) + " contains " + shown(condition.other, variables);
  case Condition::Kind::no:
    return "not " + shown(condition.parts.front(), variables);
  case Condition::Kind::all:
    return joined("and");
  case Condition::Kind::any:
    return joined("or");
  }
  return {};
}

/// Writes the outline. A variable that some step gives is unknown from the start: a later round may have changed it.
class Outline {
public:
  Outline(const Workflow& workflow, Variables variables) : known_(std::move(variables)) { forget(workflow.steps); }

  std::string of(const Steps& steps, int depth = 0) {
    std::string text;
    for (const Step& step : steps) {
      text += fmt::format("{:>4}  {:{}}{}{}\n", step.place.line, "", depth * 2, describe(step, known_), resultOf(step));
      std::visit(Overloaded{[&](const RepeatStep& work) { text += of(work.steps, depth + 1); },
                            [&](const IfStep& work) {
                              text += of(work.then, depth + 1) + part("else", work.otherwise, depth);
                            },
                            [&](const TryStep& work) {
                              text += of(work.steps, depth + 1) + part("otherwise", work.otherwise, depth);
                            },
                            [](const auto&) {}},
                 step.work);
    }
    return text;
  }

private:
  // A word on a line of its own, without a number: it is no step.
  std::string part(std::string_view word, const Steps& steps, int depth) {
    return steps.empty() ? std::string() : fmt::format("      {:{}}{}\n", "", depth * 2, word) + of(steps, depth + 1);
  }

  static std::string resultOf(const Step& step) {
    const auto* action = std::get_if<ActionStep>(&step.work);
    return action && action->result ? " → " + action->result->text : std::string();
  }

  void forget(const Steps& steps) {
    for (const Step& step : steps) {
      std::visit(Overloaded{[&](const ActionStep& work) {
                              if (work.result)
                                known_.erase(work.result->text);
                            },
                            [&](const RepeatStep& work) {
                              // A repeat gives its item anew in each round.
                              known_.erase(work.item.text);
                              forget(work.steps);
                            },
                            [&](const IfStep& work) {
                              forget(work.then);
                              forget(work.otherwise);
                            },
                            [&](const TryStep& work) {
                              forget(work.steps);
                              forget(work.otherwise);
                            },
                            [&](const SetStep& work) {
                              for (const NamedExpression& one : work.values)
                                known_.erase(one.name.text);
                            },
                            [&](const AppendStep& work) { known_.erase(work.value.name.text); },
                            [](const PrintStep&) {}},
                 step.work);
    }
  }

  Variables known_;
};

} // namespace

std::string kindOf(const Step& step) {
  return std::visit(Overloaded{[](const ActionStep& work) { return work.action.text; },
                               [](const RepeatStep&) { return std::string("repeat"); },
                               [](const IfStep&) { return std::string("if"); },
                               [](const TryStep&) { return std::string("try"); },
                               [](const SetStep&) { return std::string("set"); },
                               [](const AppendStep&) { return std::string("append"); },
                               [](const PrintStep&) { return std::string("print"); }},
                    step.work);
}

std::string describe(const Step& step, const Variables& variables) {
  const std::string rest =
      std::visit(Overloaded{[&](const ActionStep& work) { return shown(work.parameters, variables); },
                            [&](const RepeatStep& work) {
                              return fmt::format("for each {} in {}", work.item.text, shown(work.list, variables));
                            },
                            [&](const IfStep& work) { return shown(work.condition, variables); },
                            [](const TryStep&) { return std::string(); },
                            [&](const SetStep& work) { return shown(work.values, variables); },
                            [&](const AppendStep& work) {
                              return fmt::format("{} to {}", shown(work.value.value, variables), work.value.name.text);
                            },
                            [&](const PrintStep& work) { return shown(work.value, variables); }},
                 step.work);
  return (step.title ? shown(*step.title, variables) + ": " : std::string()) + kindOf(step) +
         (rest.empty() ? "" : " ") + rest;
}

std::string outline(const Workflow& workflow, const Variables& variables) {
  return Outline(workflow, variables).of(workflow.steps);
}

} // namespace tabwright::host::workflow
