#pragma once

#include "platform/LogReceiver.h"
#include "platform/Mutex.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::testsupport {

/// Collects the process's log while it lives, as lines "error Scriptacular: text". One at a time.
class LogCapture {
public:
  LogCapture() {
    platform::setLogReceiver(platform::LogLevel::debug,
                             [this](platform::LogLevel level, std::string_view category, std::string_view text) {
                               static constexpr const char* names[]{"debug", "info", "error"};
                               const platform::MutexLock lock(mutex_);
                               lines_.push_back(std::string(names[static_cast<int>(level)]) + ' ' +
                                                std::string(category) + ": " + std::string(text));
                             });
  }
  ~LogCapture() { platform::setLogReceiver(platform::LogLevel::error, {}); }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  [[nodiscard]] std::vector<std::string> lines() const {
    const platform::MutexLock lock(mutex_);
    return lines_;
  }
  [[nodiscard]] bool holds(std::string_view line) const { return std::ranges::count(lines(), line) > 0; }
  /// The lines that begin with `prefix`.
  [[nodiscard]] std::vector<std::string> linesOf(std::string_view prefix) const {
    std::vector<std::string> found = lines();
    std::erase_if(found, [prefix](const std::string& line) { return !line.starts_with(prefix); });
    return found;
  }

private:
  mutable platform::Mutex mutex_;
  std::vector<std::string> lines_ GUARDED_BY(mutex_);
};

} // namespace tabwright::testsupport
