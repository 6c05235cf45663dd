#pragma once

#include "crashreport/CrashReporter.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabwright::testsupport {

/// Keeps the texts of what is reported.
class RecordingCrashReporter final : public crashreport::CrashReporter {
public:
  std::vector<std::string> captured;
  std::vector<std::string> messages;
  bool isStarted = false;

  void start() noexcept override { isStarted = true; }
  void captureError(const std::exception& error) noexcept override { captured.emplace_back(error.what()); }
  void captureMessage(std::string_view message) noexcept override { messages.emplace_back(message); }
};

} // namespace tabwright::testsupport
