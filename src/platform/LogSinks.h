#pragma once

#include "platform/Logger.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// The places that the program's log goes to. A line is `[time] [level] [subsystem:category] text`. Nothing set:
/// nowhere.
///
///     installLogSinks({.file = defaultLogFile(), .standardErrorLevel = LogLevel::error});
struct LogSinks {
  /// A file that lines are added to; it is rotated at one megabyte, three old ones are kept. Its folder is made.
  std::optional<std::filesystem::path> file = std::nullopt;
  LogLevel fileLevel = LogLevel::debug;
  /// The lowest level that goes to standard error.
  std::optional<LogLevel> standardErrorLevel = std::nullopt;
  /// Called once, with the reason, when lines can't be written to the file: on the thread that logs, and it must not
  /// log. The sentence has no full stop.
  std::function<void(const std::string& sentence)> onLoss = nullptr;
};

/// `tabwright/tabwright.log` in the XDG state home.
[[nodiscard]] std::filesystem::path defaultLogFile();

/// The level of the environment variable TABWRIGHT_LOG_LEVEL; `info` without one, or for a name that is none. At
/// `debug` the log holds programs and what pages gave.
[[nodiscard]] LogLevel defaultFileLevel();

/// The level of the name "debug", "info" or "error"; nothing for others.
[[nodiscard]] std::optional<LogLevel> logLevelNamed(std::string_view name);

/// Sends the log to these sinks from now on. A file that can't be opened is reported to `onLoss` and left out: a
/// program runs without its log. Lines that are under way in other threads may still go to the former sinks.
void installLogSinks(const LogSinks& sinks);

} // namespace tabwright::platform
