// The steps are run by recursion over the tree, one coroutine for each list of them. A failure becomes a StepFailure
// once, at the innermost step, with the rounds that are under way, and goes through the steps around it as it is.
// Variables are one map for the whole run: steps inside of others see and change those outside.
#include "host/workflow/WorkflowRunner.h"

#include "host/FailureWords.h"
#include "host/Perform.h"
#include "host/workflow/StepWords.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace tabwright::host::workflow {

namespace json = boost::json;

namespace {

/// A round of a repeat that is under way.
struct Round {
  std::size_t line;
  std::size_t number;
};

bool isEmpty(const json::value& value) {
  if (const json::string* text = value.if_string())
    return text->empty();
  if (const json::array* list = value.if_array())
    return list->empty();
  if (const json::object* object = value.if_object())
    return object->empty();
  return value == false || value == 0 || value == 0.0 || value.is_null();
}

// Numbers come from pages and command lines as texts, so the way they read decides.
bool areEqual(const json::value& a, const json::value& b) {
  return a == b || (a.is_primitive() && b.is_primitive() && textOf(a) == textOf(b));
}

// Anything but a list is searched as the text that it would be printed as.
bool contains(const json::value& whole, const json::value& part) {
  if (const json::array* list = whole.if_array())
    return std::ranges::any_of(*list, [&](const json::value& item) { return areEqual(item, part); });
  return textOf(whole).find(textOf(part)) != std::string::npos;
}

bool holds(const Condition& condition, const Variables& variables) {
  const auto partHolds = [&](const Condition& part) { return holds(part, variables); };
  switch (condition.kind) {
  case Condition::Kind::isTrue:
    return !isEmpty(evaluate(condition.value, variables));
  case Condition::Kind::equals:
    return areEqual(evaluate(condition.value, variables), evaluate(condition.other, variables));
  case Condition::Kind::contains:
    return contains(evaluate(condition.value, variables), evaluate(condition.other, variables));
  case Condition::Kind::no:
    return !partHolds(condition.parts.front());
  case Condition::Kind::all:
    return std::ranges::all_of(condition.parts, partHolds);
  case Condition::Kind::any:
    return std::ranges::any_of(condition.parts, partHolds);
  }
  return false;
}

/// The host of one step's action: the workflow's, but for what the observer shows.
class StepHost final : public intents::ActionHost {
public:
  StepHost(const Step& step, intents::ActionHost& host, WorkflowObserver& observer)
      : step_(step), host_(host), observer_(observer) {}

  platform::Task<void> requestConfirmation(intents::LocalizedText question) override {
    return host_.requestConfirmation(std::move(question));
  }
  void notice(const platform::Notice& notice) override {
    notices_.emplace_back(notice.sentence);
    observer_.noticed(step_, notice);
  }
  [[nodiscard]] const json::array& notices() const { return notices_; }

private:
  json::array notices_;
  const Step& step_;
  intents::ActionHost& host_;
  WorkflowObserver& observer_;
};

class Run {
public:
  Run(Variables variables, const Catalogue& catalogue, intents::ActionHost& host, WorkflowObserver& observer,
      const FileReader& readFile)
      : variables_(std::move(variables)), catalogue_(catalogue), host_(host), observer_(observer), readFile_(readFile) {
  }

  platform::Task<void> run(const Steps& steps, std::size_t depth) {
    for (const Step& step : steps) {
      observer_.stepBegins(step, variables_, depth);
      // The observer hears of the end of a step that fails, too, so the failure is kept meanwhile.
      std::optional<StepFailure> failure;
      try {
        co_await work(step, depth);
      } catch (const StepFailure& inner) { // a step inside this one
        failure = inner;
      } catch (const platform::Failure& thrown) {
        failure = failed(step, step.place, thrown.errorDescription(), thrown.identity());
        failure->setCause(thrown.cause());
      } catch (const Problem& problem) {
        failure = failed(step, problem.place, problem.sentence, {"WorkflowError", "noValue", {}});
      }
      observer_.stepEnds(step, failure ? failure->reason() : std::string());
      if (failure)
        throw StepFailure(*failure);
    }
  }

private:
  [[nodiscard]] StepFailure failed(const Step& step, Place place, std::string reason,
                                   platform::FailureIdentity identity) const {
    std::string where;
    for (const Round& round : rounds_)
      where +=
          fmt::format("{}round {} of the repeat in line {}", where.empty() ? " (" : ", ", round.number, round.line);
    return {place, kindOf(step), std::move(reason), where.empty() ? where : where + ")", std::move(identity)};
  }

  platform::Task<void> work(const Step& step, std::size_t depth) {
    if (const auto* action = std::get_if<ActionStep>(&step.work))
      co_await perform(step, *action);
    else if (const auto* repeat = std::get_if<RepeatStep>(&step.work))
      co_await goRound(step, *repeat, depth);
    else if (const auto* branch = std::get_if<IfStep>(&step.work))
      co_await run(holds(branch->condition, variables_) ? branch->then : branch->otherwise, depth + 1);
    else if (const auto* attempt = std::get_if<TryStep>(&step.work))
      co_await tryOut(*attempt, depth);
    else if (const auto* set = std::get_if<SetStep>(&step.work))
      assign(*set);
    else if (const auto* append = std::get_if<AppendStep>(&step.work))
      add(append->value);
    else
      observer_.printed(textOf(evaluate(std::get<PrintStep>(step.work).value, variables_)));
  }

  platform::Task<void> perform(const Step& step, const ActionStep& action) {
    const intents::Intent& declaration = catalogue_.declaration(action.action.text);
    // As texts, which the action reads as it would from a command line.
    ParameterTexts parameters;
    for (const NamedExpression& parameter : action.parameters) {
      const json::value value = evaluate(parameter.value, variables_);
      if (value.is_null()) // which leaves the default
        continue;
      std::string text = textOf(value);
      if (const auto* declared = declaration.findParameter(parameter.name.text);
          declared && readsFile(*declared, parameter.value))
        text = readFile_(text.substr(1));
      parameters.emplace_back(parameter.name.text, std::move(text));
    }
    StepHost host(step, host_, observer_);
    // Those of the action before aren't this one's, also where it fails.
    variables_[noticesVariable] = json::array();
    ActionResult result = co_await host::perform(catalogue_, action.action.text, std::move(parameters), host);
    variables_[noticesVariable] = host.notices();
    if (action.result)
      variables_[action.result->text] = std::move(result.value);
  }

  platform::Task<void> goRound(const Step& step, const RepeatStep& repeat, std::size_t depth) {
    // Taken once: what the steps do to its variable changes nothing about the rounds.
    const json::value list = listOf(repeat.list);
    const std::size_t count = list.get_array().size();
    // Left there when a step fails, for the failure to tell of; `tryOut` takes them away.
    rounds_.push_back({step.place.line, 0});
    for (std::size_t index = 0; index < count; ++index) {
      rounds_.back().number = index + 1;
      observer_.roundBegins(step, depth, index + 1, count);
      variables_[repeat.item.text] = list.get_array()[index];
      co_await run(repeat.steps, depth + 1);
    }
    rounds_.pop_back();
  }

  // A text may hold the list, such as the result of JavaScript.
  [[nodiscard]] json::value listOf(const Expression& expression) const {
    json::value value = evaluate(expression, variables_);
    if (const json::string* text = value.if_string()) {
      boost::system::error_code error;
      if (json::value parsed = json::parse(*text, error); !error && parsed.is_array())
        return parsed;
    }
    if (!value.is_array())
      throw Problem{expression.place, "What is repeated over is a list, not " + quotedBriefly(textOf(value)) + "."};
    return value;
  }

  platform::Task<void> tryOut(const TryStep& attempt, std::size_t depth) {
    std::optional<StepFailure> failure;
    const std::size_t rounds = rounds_.size();
    try {
      co_await run(attempt.steps, depth + 1);
    } catch (const StepFailure& thrown) {
      failure = thrown;
    }
    // Out of the handler, as no coroutine can wait inside of one.
    if (!failure)
      co_return;
    rounds_.resize(rounds); // those of the step that failed are over
    json::object error = failureJson(*failure);
    // Without the step and its rounds, which the workflow itself knows.
    error["message"] = failure->reason();
    variables_[errorVariable] = std::move(error);
    co_await run(attempt.otherwise, depth + 1);
  }

  void assign(const SetStep& set) {
    for (const NamedExpression& one : set.values)
      variables_[one.name.text] = evaluate(one.value, variables_);
  }

  void add(const NamedExpression& item) {
    const auto list = variables_.find(item.name.text);
    if (list == variables_.end() || !list->second.is_array())
      throw Problem{item.name.place, fmt::format("“{}” is no list that something can be added to.", item.name.text)};
    list->second.get_array().push_back(evaluate(item.value, variables_));
  }

  Variables variables_;
  const Catalogue& catalogue_;
  intents::ActionHost& host_;
  WorkflowObserver& observer_;
  const FileReader& readFile_;
  std::vector<Round> rounds_; ///< the outermost first
};

} // namespace

platform::Task<void> runWorkflow(const Workflow& workflow, Variables variables, const Catalogue& catalogue,
                                 intents::ActionHost& host, WorkflowObserver& observer, const FileReader& readFile) {
  Run run(std::move(variables), catalogue, host, observer, readFile);
  co_await run.run(workflow.steps, 0);
}

} // namespace tabwright::host::workflow
