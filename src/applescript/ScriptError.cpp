// Number and sentence make the description that a failed run is known by; the place is kept apart from it.
#include "applescript/ScriptError.h"

#include <fmt/core.h>

namespace tabwright::applescript {

ScriptError::ScriptError(Stage stage, int number, std::string sentence, SourceRange range)
    : stage_(stage), number_(number), sentence_(std::move(sentence)) {
  if (range != SourceRange{})
    range_ = range;
}

ScriptError::ScriptError(int number, std::shared_ptr<const Sentence> sentence)
    : stage_(Stage::execution), number_(number), wordless_(std::move(sentence)) {}

std::string ScriptError::message() const {
  return application_ ? fmt::format("{} got an error: {}", *application_, sentence()) : sentence();
}

ScriptError& ScriptError::settle() {
  sentence_ = sentence();
  wordless_.reset();
  return *this;
}

ScriptError& ScriptError::raisedBy(std::string application) {
  application_ = std::move(application);
  return *this;
}

ScriptError& ScriptError::at(SourceRange range) {
  // Set on the way out, from the innermost place on.
  if (!range_)
    range_ = range;
  return *this;
}

std::string ScriptError::errorDescription() const {
  return fmt::format("{} error: {} ({})", stage_ == Stage::syntax ? "syntax" : "execution", message(), number_);
}

platform::FailureIdentity ScriptError::identity() const {
  const bool isUnreachable = number_ == errorNumber::applicationNotRunning ||
                             number_ == errorNumber::connectionInvalid || number_ == errorNumber::notAuthorised;
  return {"ScriptError", stage_ == Stage::syntax ? "syntax" : "execution", number_,
          isUnreachable ? platform::FailureClass::unreachable : platform::FailureClass::failed};
}

} // namespace tabwright::applescript
