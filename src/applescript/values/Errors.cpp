// The sentences are the language's own, with its typographic quotation marks; callers look for numbers and phrases in
// them, so each is worded in this one place.
#include "applescript/values/Errors.h"

#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::applescript::errors {

ScriptError of(int number, std::string sentence) {
  return ScriptError(ScriptError::Stage::execution, number, std::move(sentence));
}

ScriptError cannotGet(const std::string& what) {
  return of(errorNumber::noSuchObject, fmt::format("Can’t get {}.", what));
}

ScriptError cannotSet(const std::string& what, const Value& value) {
  return of(errorNumber::cannotSet, fmt::format("Can’t set {} to {}.", what, shortSourceForm(value)));
}

namespace {

class CannotMake final : public ScriptError::Sentence {
public:
  CannotMake(const Value& subject, std::string_view type) : value(subject), type_(type) {}

  [[nodiscard]] std::string text() const override {
    return fmt::format("Can’t make {} into type {}.", shortSourceForm(value), type_);
  }

  const Value value;

private:
  std::string type_;
};

} // namespace

ScriptError cannotMake(const Value& value, std::string_view type) {
  auto sentence = std::make_shared<const CannotMake>(value, type);
  ScriptError error(errorNumber::cannotMake, sentence);
  const Value* subject = &sentence->value;
  error.offendingObject = std::shared_ptr<const Value>(std::move(sentence), subject);
  return error;
}

ScriptError undefinedVariable(std::string_view name) {
  return of(errorNumber::undefinedVariable, fmt::format("The variable {} is not defined.", name));
}

ScriptError noResult() {
  return of(errorNumber::noResult, "No result was returned from some part of this expression.");
}

ScriptError notUnderstood(const std::string& subject, std::string_view message) {
  return of(errorNumber::notHandled, fmt::format("{} doesn’t understand the “{}” message.", subject, message));
}

ScriptError userCancelled() {
  return of(errorNumber::userCancelled, "User canceled.");
}

ScriptError divisionByZero() {
  return of(errorNumber::divisionByZero, "Can’t divide by zero.");
}

ScriptError numericOverflow() {
  return of(errorNumber::numericOverflow, "The result of a numeric operation was too large.");
}

ScriptError stackOverflow() {
  return of(errorNumber::stackOverflow, "Stack overflow.");
}

ScriptError outOfMemory() {
  return of(errorNumber::outOfMemory, "Out of memory.");
}

} // namespace tabwright::applescript::errors
