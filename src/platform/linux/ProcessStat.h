#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace tabwright::platform {

/// The fields of /proc/PID/stat that are asked for, by their numbers in proc(5).
enum class StatField { parent = 4, startTime = 22 };

/// A field of the text of that file, for a field behind the second; nothing for a text that lacks it. Fields are
/// counted behind the command's name, which may hold blanks and parentheses itself.
[[nodiscard]] inline std::optional<std::int64_t> fieldOfStat(std::string_view text, StatField field) {
  const std::size_t name = text.rfind(')');
  if (name == std::string_view::npos)
    return std::nullopt;
  std::size_t place = name + 2;
  for (int number = 3; number < static_cast<int>(field); ++number) {
    place = text.find(' ', place);
    if (place == std::string_view::npos)
      return std::nullopt;
    ++place;
  }
  if (place >= text.size())
    return std::nullopt;
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data() + place, text.data() + text.size(), value);
  return error == std::errc() ? std::optional(value) : std::nullopt;
}

} // namespace tabwright::platform
