#pragma once

#include "applescript/terminology/Terminology.h"
#include "applescript/values/Value.h"

#include <string>

namespace tabwright::applescript {

struct AppleEventMessage;

/// An application that specifiers name and that answers Apple events. Implemented outside this folder; the language
/// knows no application.
///
/// Called from the thread of a running script, from several such threads at once. Specifiers share it, so it lives as
/// long as any value that names something in it.
class ScriptableApplication {
public:
  virtual ~ScriptableApplication() = default;

  /// The name in messages ("NAME got an error: …") and in `application "NAME"`.
  [[nodiscard]] virtual const std::string& name() const = 0;
  /// The bundle identifier in its usual spelling; compared ignoring case.
  [[nodiscard]] virtual const std::string& bundleIdentifier() const = 0;

  /// The dictionary that words its classes and properties in source form; null for none. Lives as long as this.
  [[nodiscard]] virtual const Terminology* terminology() const { return nullptr; }

  /// Answers an event. `missing value` when there is nothing to answer.
  ///
  /// A specifier in the answer names one object by id. Throws ScriptError with AppleScript's number and a sentence
  /// without the application's name (the evaluator adds it). Returns or throws by the message's deadline and soon after
  /// its stop is requested.
  virtual Value handle(const AppleEventMessage& message) = 0;

  /// The application runs now (`application "X" is running`). Never starts it.
  [[nodiscard]] virtual bool isRunning() = 0;
};

} // namespace tabwright::applescript
