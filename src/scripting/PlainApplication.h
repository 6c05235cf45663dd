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
  PlainApplication(std::string name, std::string bundleIdentifier, std::function<void()> activate);

  [[nodiscard]] const std::string& name() const override { return name_; }
  [[nodiscard]] const std::string& bundleIdentifier() const override { return bundleIdentifier_; }
  [[nodiscard]] const applescript::Terminology* terminology() const override;
  applescript::Value handle(const applescript::AppleEventMessage& message) override;
  [[nodiscard]] bool isRunning() override { return true; }

private:
  std::string name_;
  std::string bundleIdentifier_;
  std::function<void()> activate_;
};

} // namespace tabwright::scripting
