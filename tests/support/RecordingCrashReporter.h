#pragma once

#include "crashreport/CrashReporter.h"

#include <string>
#include <vector>

namespace tabwright::testsupport {

/// Keeps the texts of the reported errors.
class RecordingCrashReporter final : public crashreport::CrashReporter {
public:
  std::vector<std::string> captured;

  void captureError(const std::exception& error) noexcept override { captured.emplace_back(error.what()); }
};

} // namespace tabwright::testsupport
