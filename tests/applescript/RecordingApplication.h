#pragma once

#include "applescript/SyntaxDictionaries.h"
#include "applescript/events/AppleEventMessage.h"
#include "applescript/events/ApplicationDirectory.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tabwright::applescript::test {

/// An application that notes the events it gets and answers from a table.
///
/// An event is noted as one line, the application left out: `get name of every window`,
/// `set URL of tab id 5 data:"x"`, `execute JvSc:"1" to active tab of window 1` (`to` with the subject).
class RecordingApplication final : public ScriptableApplication {
public:
  RecordingApplication(std::string name, std::string bundleIdentifier)
      : name_(std::move(name)), bundleIdentifier_(std::move(bundleIdentifier)) {}

  [[nodiscard]] const std::string& name() const override { return name_; }
  [[nodiscard]] const std::string& bundleIdentifier() const override { return bundleIdentifier_; }
  [[nodiscard]] const Terminology* terminology() const override { return dictionaries_.terminologyByName(name_); }
  [[nodiscard]] bool isRunning() override { return true; }

  /// Answers from `answers` by the line; an event that isn't there is error −1728 for a `get` and no answer otherwise.
  Value handle(const AppleEventMessage& message) override;

  std::map<std::string, Value> answers;
  /// Called before answering, with the message.
  std::function<void(const AppleEventMessage&)> onEvent;
  std::vector<std::string> events;

private:
  [[nodiscard]] std::string shown(const Value& value) const;

  std::string name_;
  std::string bundleIdentifier_;
  SyntaxDictionaries dictionaries_;
};

/// The dictionaries of SyntaxDictionaries, with a recording application behind each.
class RecordingDirectory final : public ApplicationDirectory {
public:
  // Answers may name objects of the application that gives them.
  ~RecordingDirectory() override {
    chrome->answers.clear();
    systemEvents->answers.clear();
  }

  [[nodiscard]] const Terminology* terminologyByID(std::string_view id) const override {
    return dictionaries_.terminologyByID(id);
  }
  [[nodiscard]] const Terminology* terminologyByName(std::string_view name) const override {
    return dictionaries_.terminologyByName(name);
  }
  [[nodiscard]] std::shared_ptr<ScriptableApplication> findByID(std::string_view id) override;
  [[nodiscard]] std::shared_ptr<ScriptableApplication> findByName(std::string_view name) override;

  const std::shared_ptr<RecordingApplication> chrome =
      std::make_shared<RecordingApplication>("Google Chrome", "com.google.Chrome");
  const std::shared_ptr<RecordingApplication> systemEvents =
      std::make_shared<RecordingApplication>("System Events", "com.apple.systemevents");

private:
  SyntaxDictionaries dictionaries_;
};

} // namespace tabwright::applescript::test
