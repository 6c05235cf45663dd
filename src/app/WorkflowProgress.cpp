// The line of an action is begun before it and ended behind it, so that a person sees what is waited for; notices come
// in between, and are kept for the lines beneath. Of the other steps only those are shown that decide which ones come
// next: those with others inside, before them, and a repeat by its rounds.
#include "app/WorkflowProgress.h"

#include "host/workflow/StepWords.h"
#include "platform/TerminalCells.h"

#include <fmt/core.h>

#include <utility>
#include <variant>

namespace tabwright::app {

namespace {

constexpr std::size_t spaceForTheEnd = 12; // " … failed", " … 12.34 s"

bool isAction(const host::workflow::Step& step) {
  return std::holds_alternative<host::workflow::ActionStep>(step.work);
}

// Steps with others inside are told of before these.
bool isShownFirst(const host::workflow::Step& step) {
  return std::holds_alternative<host::workflow::IfStep>(step.work) ||
         std::holds_alternative<host::workflow::TryStep>(step.work);
}

} // namespace

std::string WorkflowProgress::lineFor(const host::workflow::Step& step, std::size_t depth,
                                      const std::string& text) const {
  const std::string start = fmt::format("{:>4}  {:{}}", step.place.line, "", depth * 2);
  // Room is kept for the end, so that the line doesn't wrap when that comes.
  const std::size_t taken = start.size() + spaceForTheEnd;
  return start + platform::fitted(platform::onOneLine(text), width_ > taken ? width_ - taken : 1);
}

WorkflowProgress::~WorkflowProgress() {
  if (isLineOpen_) // it was interrupted
    terminal_ << std::endl;
}

void WorkflowProgress::showTitle(const std::string& title) {
  if (!title.empty())
    terminal_ << platform::fitted(platform::onOneLine(title), width_) << std::endl;
}

void WorkflowProgress::stepBegins(const host::workflow::Step& step, const host::workflow::Variables& variables,
                                  std::size_t depth) {
  isLineOpen_ = isAction(step);
  if (isLineOpen_)
    terminal_ << lineFor(step, depth, host::workflow::describe(step, variables)) << " … " << std::flush;
  else if (isShownFirst(step))
    terminal_ << lineFor(step, depth, host::workflow::describe(step, variables)) << '\n';
  began_ = clock_.secondsSinceReferenceDate();
}

void WorkflowProgress::stepEnds(const host::workflow::Step& step, const std::string& failure) {
  if (!isAction(step))
    return;
  terminal_ << (failure.empty() ? fmt::format("{:.2f} s", clock_.secondsSinceReferenceDate() - began_) : "failed")
            << std::endl;
  isLineOpen_ = false;
  for (const std::string& notice : std::exchange(notices_, {}))
    terminal_ << "      " << notice << std::endl;
}

void WorkflowProgress::roundBegins(const host::workflow::Step& step, std::size_t depth, std::size_t round,
                                   std::size_t rounds) {
  terminal_ << lineFor(step, depth, fmt::format("repeat {} of {}", round, rounds)) << '\n';
}

void WorkflowProgress::noticed(const host::workflow::Step& /*step*/, const platform::Notice& notice) {
  notices_.push_back(notice.sentence);
}

void WorkflowProgress::printed(const std::string& text) {
  output_ << text << std::endl;
}

} // namespace tabwright::app
