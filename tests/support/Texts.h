#pragma once

#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::testsupport {

[[nodiscard]] inline std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t count = 0; count < times; ++count)
    all += text;
  return all;
}

[[nodiscard]] inline std::string replacingAll(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

[[nodiscard]] inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

} // namespace tabwright::testsupport
