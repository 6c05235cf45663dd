#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/values/ScriptableApplication.h"

#include <functional>
#include <string>

namespace tabwright::scripting {

/// An application that scripts can address by name and bring to the front, and nothing more: this program itself, and
/// those on the desktop that have no dictionary.
class PlainApplication final : public applescript::ScriptableApplication {
public:
  /// `activate` brings the application to the front; it is called on the script's thread, may come from several at
  /// once, and may throw a platform::Failure. Empty: nothing happens.
  PlainApplication(std::string name, std::string bundleIdentifier, std::function<void()> activate);

  [[nodiscard]] const std::string& name() const override { return name_; }
  [[nodiscard]] const std::string& bundleIdentifier() const override { return bundleIdentifier_; }
  /// The language's own words, in which its errors are worded.
  [[nodiscard]] const applescript::Terminology* terminology() const override;
  /// Throws ScriptError: −1728 for what it can't get, −1708 for any other event.
  applescript::Value handle(const applescript::AppleEventMessage& message) override;
  /// Always: it is made only of what runs. One that has quit since still counts.
  [[nodiscard]] bool isRunning() override { return true; }

private:
  std::string name_;
  std::string bundleIdentifier_;
  std::function<void()> activate_;
};

} // namespace tabwright::scripting
