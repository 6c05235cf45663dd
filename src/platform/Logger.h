#pragma once

#include <fmt/core.h>

#include <string>
#include <string_view>
#include <utility>

namespace tabwright::platform {

enum class LogLevel { debug, info, error };

/// Writes lines of one subsystem and category, as `[time] [level] [category] text`, to the sink that the program has
/// set up: by default nowhere. Cheap when the level is off: the arguments are not formatted then.
///
///     const Logger log("Scriptacular"); // in the source's unnamed namespace
///     log.debug("Arguments: {}", text);
///
/// Safe to use from any thread.
class Logger {
public:
  explicit Logger(std::string category);

  [[nodiscard]] bool isOn(LogLevel level) const;
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
  std::string category_;
};

} // namespace tabwright::platform
