#pragma once

#include <string>
#include <vector>

namespace tabwright::platform {

/// The words of a command as exec(3) and posix_spawn(3) take them, with the null at the end. They point into `words`,
/// which nobody writes through them.
[[nodiscard]] inline std::vector<char*> argumentVector(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words)
    arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  return arguments;
}
[[nodiscard]] std::vector<char*> argumentVector(std::vector<std::string>&&) = delete;

} // namespace tabwright::platform
