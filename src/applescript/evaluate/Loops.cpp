// Loops. Bounds and lists are evaluated once, before the first round; only the conditions of `while` and `until` are
// asked in each. A round takes a step of its own, so that one with an empty body can be stopped too. Leaving a loop
// ends here, while a `return` passes through.
#include "applescript/evaluate/Statements.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::applescript {

namespace {

Flow repeatTimes(Evaluator& run, const Repeat& repeat) {
  const std::int64_t times = integerOf(run.operand(*repeat.condition));
  Flow flow = Flow::next;
  for (std::int64_t round = 0; round < times && flow == Flow::next; ++round) {
    run.budget.step();
    flow = run.execute(repeat.body);
  }
  return flow;
}

Flow repeatWhile(Evaluator& run, const Repeat& repeat) {
  const bool wanted = repeat.form == Repeat::Form::whileTrue;
  Flow flow = Flow::next;
  while (flow == Flow::next && run.condition(*repeat.condition) == wanted) {
    run.budget.step();
    flow = run.execute(repeat.body);
  }
  return flow;
}

Flow repeatRange(Evaluator& run, const Repeat& repeat) {
  std::int64_t counter = integerOf(run.operand(*repeat.from));
  const std::int64_t last = integerOf(run.operand(*repeat.to));
  const std::int64_t by = repeat.by ? integerOf(run.operand(*repeat.by)) : 1;
  Flow flow = Flow::next;
  while (flow == Flow::next && (by >= 0 ? counter <= last : counter >= last)) {
    run.budget.step();
    // The count goes on from `counter`, whatever the body makes of the variable.
    assignToVariable(run, *repeat.variable, counter);
    flow = run.execute(repeat.body);
    // Beyond 64 bits there is no next round.
    if (__builtin_add_overflow(counter, by, &counter))
      break;
  }
  return flow;
}

Flow repeatItems(Evaluator& run, const Repeat& repeat) {
  // The list is evaluated once; a list of objects costs one event.
  const Value whole = run.plain(run.evaluate(*repeat.items));
  Value::ListPointer list;
  if (const auto* given = whole.get<Value::ListPointer>()) {
    list = *given;
  } else if (const auto* text = whole.get<Text>()) {
    list = std::make_shared<List>();
    for (std::size_t index = 0, count = run.picker.characters().count(*text); index < count; ++index) {
      const TextRange range = run.picker.characters().character(*text, index);
      list->items.emplace_back(text->utf8().substr(range.offset, range.length));
    }
  } else if (whole.is<Value::RecordPointer>() || whole.is<Value::SpecifierPointer>()) {
    list = listOf(whole);
  } else {
    throw errors::cannotGet(fmt::format("every item of {}", shortSourceForm(whole)));
  }
  Flow flow = Flow::next;
  // The body may change the list: items that it adds at the end aren't visited, and a list that has shrunk ends the
  // loop.
  const std::size_t count = list->items.size();
  for (std::size_t index = 0; index < count && index < list->items.size() && flow == Flow::next; ++index) {
    run.budget.step();
    // The variable gets the place of the item, so that `set contents of x` changes the list.
    assignToVariable(run, *repeat.variable,
                     Value::ReferencePointer(std::make_shared<const ItemReference>(list, index)));
    flow = run.execute(repeat.body);
  }
  return flow;
}

} // namespace

Flow executeRepeat(Evaluator& run, const Repeat& repeat) {
  Flow flow = Flow::next;
  switch (repeat.form) {
  case Repeat::Form::forever:
    while (flow == Flow::next) {
      run.budget.step();
      flow = run.execute(repeat.body);
    }
    break;
  case Repeat::Form::times:
    flow = repeatTimes(run, repeat);
    break;
  case Repeat::Form::whileTrue:
  case Repeat::Form::untilTrue:
    flow = repeatWhile(run, repeat);
    break;
  case Repeat::Form::range:
    flow = repeatRange(run, repeat);
    break;
  case Repeat::Form::items:
    flow = repeatItems(run, repeat);
    break;
  }
  return flow == Flow::returned ? flow : Flow::next;
}

} // namespace tabwright::applescript
