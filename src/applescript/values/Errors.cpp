// The sentences are the language's own, with its typographic quotation marks; callers look for numbers and phrases in
// them, so each is worded in this one place.
#include "applescript/values/Errors.h"

#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::applescript::errors {

ScriptError of(int number, std::string sentence) {
  return ScriptError(ScriptError::Stage::execution, number, std::move(sentence));
}

ScriptError cannotGet(std::string_view what) {
  return of(errorNumber::noSuchObject, fmt::format("Can’t get {}.", what));
}

ScriptError cannotGet(const ObjectSpecifier& specifier, const Terminology& dictionary) {
  return cannotGet(shortSourceForm(specifier, dictionary));
}

ScriptError invalidIndex(const ObjectSpecifier& specifier, const Terminology& dictionary) {
  return of(errorNumber::invalidIndex,
            fmt::format("Can’t get {}. Invalid index.", shortSourceForm(specifier, dictionary)));
}

namespace {

ScriptError cannotSetTo(std::string_view what, std::string_view value) {
  return of(errorNumber::cannotSet, fmt::format("Can’t set {} to {}.", what, value));
}

} // namespace

ScriptError cannotSet(std::string_view what, const Value& value) {
  return cannotSetTo(what, shortSourceForm(value));
}

ScriptError cannotSet(const ObjectSpecifier& specifier, const Value& value, const Terminology& dictionary) {
  return cannotSetTo(shortSourceForm(specifier, dictionary), shortSourceForm(value, dictionary));
}

namespace {

// The one error that scripts provoke by the thousand to tell values apart. Its value is put into words only for those
// who read the sentence.
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
  // The value lives inside of the sentence, which both then hold.
  error.offendingObject = std::shared_ptr<const Value>(std::move(sentence), subject);
  return error;
}

ScriptError undefinedVariable(std::string_view name) {
  return of(errorNumber::undefinedVariable, fmt::format("The variable {} is not defined.", name));
}

ScriptError noResult() {
  return of(errorNumber::noResult, "No result was returned from some part of this expression.");
}

ScriptError notUnderstood(std::string_view subject, std::string_view message) {
  return of(errorNumber::notHandled, fmt::format("{} doesn’t understand the “{}” message.", subject, message));
}

ScriptError notUnderstood(const Value& subject, EventCode event, const Terminology& dictionary) {
  return notUnderstood(shortSourceForm(subject, dictionary), commandWords(event, dictionary));
}

ScriptError missingParameter(std::string_view parameter, std::string_view command) {
  return of(errorNumber::missingParameter, fmt::format("The {} parameter is missing for {}.", parameter, command));
}

ScriptError missingParameter(std::string_view parameter, EventCode event, const Terminology& dictionary) {
  return missingParameter(parameter, commandWords(event, dictionary));
}

ScriptError cannotContinue(std::string_view name) {
  return of(errorNumber::notHandled, fmt::format("Can’t continue {}.", name));
}

ScriptError wrongParameters(std::string_view what, std::string_view handler) {
  return of(errorNumber::wrongParameters, fmt::format("{} for {}.", what, handler));
}

ScriptError invalidDate(const Value& text) {
  return of(errorNumber::invalidDate, fmt::format("Invalid date and time {}.", shortSourceForm(text)));
}

ScriptError notAvailable(std::string_view command) {
  return of(errorNumber::privilege,
            fmt::format("A privilege violation occurred: “{}” isn’t available to scripts here.", command));
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
