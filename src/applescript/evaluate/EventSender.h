#pragma once

#include "applescript/evaluate/Frame.h"
#include "applescript/evaluate/RunBudget.h"
#include "applescript/events/AppleEventMessage.h"
#include "applescript/values/ObjectSpecifier.h"
#include "platform/Notices.h"

#include <chrono>
#include <memory>
#include <string>
#include <unordered_map>

namespace tabwright::applescript {

/// A run's border to applications: finds them, and sends them events on the run's behalf.
///
/// Each event carries the target of the `tell` around, the run's stop, and a deadline. An application's errors come out
/// as ScriptErrors that name it; failures of any other type become −10000. Serves one run, on its thread, and waits for
/// each answer.
class EventSender {
public:
  /// `frame` is the run's current one, whose target an event carries. All must outlive the sender.
  EventSender(ApplicationDirectory& directory, const RunBudget& budget, Frame* const& frame,
              std::chrono::nanoseconds timeout, std::shared_ptr<platform::Notices> notices)
      : timeout(timeout), directory_(directory), budget_(budget), frame_(frame), notices_(std::move(notices)) {}

  /// Within which applications have to answer; `with timeout of …` sets it.
  std::chrono::nanoseconds timeout;

  /// The application of that name or identifier; −1728 when there is none. One that the text names literally is looked
  /// for once.
  Value::SpecifierPointer find(const ApplicationReference& reference, const std::string& designation);
  /// Null until `find` has found it and may keep it.
  [[nodiscard]] const Value::SpecifierPointer* known(const ApplicationReference& reference) const;

  /// Gives the application's answer. Subject, deadline, stop and notices of the message are filled in here; its values
  /// must be as `outgoing` gives them. −128 without an event when the run has to end.
  Value send(const std::shared_ptr<ScriptableApplication>& application, AppleEventMessage message);
  /// An event about an object of the specifier's application, without parameters. The specifier must have one.
  Value send(EventCode code, const Value::SpecifierPointer& object);
  /// The value; the specifier itself, without an event, where it names an application or nothing in one.
  Value get(const Value::SpecifierPointer& specifier);
  /// The value is made ready for the event here. The specifier must have an application.
  void set(const Value::SpecifierPointer& specifier, const Value& value);

private:
  ApplicationDirectory& directory_;
  const RunBudget& budget_;
  Frame* const& frame_;
  std::shared_ptr<platform::Notices> notices_;
  std::unordered_map<const ApplicationReference*, Value::SpecifierPointer> named_; ///< literally
};

/// The specifier, where a value names something in an application; null for any other value.
[[nodiscard]] const Value::SpecifierPointer* objectIn(const Value& value);

/// A value as events carry it: references looked through, foreign objects unwrapped, specifiers as they are.
[[nodiscard]] Value outgoing(const Value& value);

} // namespace tabwright::applescript
