#pragma once

#include "platform/Failure.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::host::workflow {

/// A stretch of a workflow's file: bytes, and the line, counted from 1, on which it begins. The file has no byte order
/// mark, so its first byte has the offset 0.
struct Place {
  std::size_t offset = 0;
  std::size_t length = 0;
  std::size_t line = 1;
};

/// A mistake at a place of the file. Thrown and collected inside this folder.
struct Problem {
  Place place;
  /// Whole, for the user: what is wrong and, where there is something, what may stand there.
  std::string sentence;
};

/// A file that is no workflow, or one of which something can't work. Nothing has been run.
class InvalidWorkflow final : public platform::Failure {
public:
  /// At least one problem, in any order.
  explicit InvalidWorkflow(std::vector<Problem> problems) : problems_(std::move(problems)) {
    std::ranges::sort(problems_, {}, [](const Problem& problem) { return problem.place.offset; });
  }

  /// In the order of the file.
  [[nodiscard]] const std::vector<Problem>& problems() const { return problems_; }

  [[nodiscard]] std::string errorDescription() const override { return problems_.front().sentence; }
  [[nodiscard]] platform::FailureIdentity identity() const override {
    return {"InvalidWorkflow", "invalid", {}, platform::FailureClass::wrongUse};
  }

private:
  std::vector<Problem> problems_;
};

/// A step that failed: the workflow has ended there. Has the identity of what the step failed with.
class StepFailure final : public platform::Failure {
public:
  /// `step` is its action or kind, `reason` a sentence, `where` in which rounds of which repeats it ran.
  StepFailure(Place place, std::string step, std::string reason, std::string where, platform::FailureIdentity identity)
      : place_(place), step_(std::move(step)), reason_(std::move(reason)), where_(std::move(where)),
        identity_(std::move(identity)) {}

  /// Of the step, or of the value in it that can't be.
  [[nodiscard]] Place place() const { return place_; }
  /// The sentence of what the step failed with, without the step and its rounds.
  [[nodiscard]] const std::string& reason() const { return reason_; }
  [[nodiscard]] std::string errorDescription() const override { return step_ + " failed" + where_ + ": " + reason_; }
  [[nodiscard]] platform::FailureIdentity identity() const override { return identity_; }

private:
  Place place_;
  std::string step_;
  std::string reason_;
  std::string where_;
  platform::FailureIdentity identity_;
};

} // namespace tabwright::host::workflow
