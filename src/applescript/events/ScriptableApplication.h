#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/terminology/Terminology.h"
#include "applescript/values/Value.h"

#include <memory>
#include <string>
#include <string_view>

namespace tabwright::applescript {

/// An application that answers Apple events. Implemented outside this folder; the language knows no application.
///
/// Called from the thread of a running script, from several such threads at once.
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

  /// Whether the application runs now (`application "X" is running`). Never starts it.
  [[nodiscard]] virtual bool isRunning() = 0;
};

/// Finds applications and their dictionaries.
class ApplicationDirectory {
public:
  virtual ~ApplicationDirectory() = default;

  /// The dictionary of an application that the text names literally; null when no such application is known. The
  /// terminology lives as long as the directory. Needs no running application.
  [[nodiscard]] virtual const Terminology* terminologyByID(std::string_view bundleIdentifier) const = 0;
  [[nodiscard]] virtual const Terminology* terminologyByName(std::string_view name) const = 0;

  /// The application itself; null when it isn't installed, which the evaluator reports as error −1728
  /// (`Can’t get application id "…".`).
  [[nodiscard]] virtual std::shared_ptr<ScriptableApplication> findByID(std::string_view bundleIdentifier) = 0;
  [[nodiscard]] virtual std::shared_ptr<ScriptableApplication> findByName(std::string_view name) = 0;
};

} // namespace tabwright::applescript
