#pragma once

#include <fmt/core.h>

#include <string>
#include <string_view>
#include <utility>

namespace tabwright::platform {

/// `debug` tells the steps of a run, `info` the events in the life of a process, `error` what went wrong though the
/// program goes on. A level includes those behind it.
enum class LogLevel { debug, info, error };

/// Writes lines of one subsystem and category, to the sink that the program has
/// set up: by default nowhere. Cheap when the level is off: the arguments are not formatted then.
///
///     const Logger log("Scriptacular"); // in the source's unnamed namespace
///     log.debug("Arguments: {}", text);
///
/// Safe to use from any thread. A logger holds nothing but its category, so it may live anywhere, also as a constant
/// that is made before `main`.
class Logger {
public:
  /// The category is the part of the program that speaks, such as "Scriptacular"; loggers of one category are alike.
  explicit Logger(std::string category);

  /// True when somebody receives lines of this level: for those whose text costs something to make.
  [[nodiscard]] bool isOn(LogLevel level) const;
  /// Writes a text as it is, which may have several lines and be of any length.
  void write(LogLevel level, std::string_view text) const;

  template <class... Arguments>
  void debug(fmt::format_string<Arguments...> format, Arguments&&... arguments) const {
    if (isOn(LogLevel::debug))
      write(LogLevel::debug, fmt::format(format, std::forward<Arguments>(arguments)...));
  }
  template <class... Arguments>
  void info(fmt::format_string<Arguments...> format, Arguments&&... arguments) const {
    if (isOn(LogLevel::info))
      write(LogLevel::info, fmt::format(format, std::forward<Arguments>(arguments)...));
  }
  template <class... Arguments>
  void error(fmt::format_string<Arguments...> format, Arguments&&... arguments) const {
    if (isOn(LogLevel::error))
      write(LogLevel::error, fmt::format(format, std::forward<Arguments>(arguments)...));
  }

private:
  /// Copied, so a temporary will do.
  std::string category_;
};

} // namespace tabwright::platform
