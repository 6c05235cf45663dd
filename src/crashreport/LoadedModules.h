#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::crashreport {

/// A program or library in this process's memory.
struct Module {
  std::string name; ///< the file's name without its folder
  std::uint64_t address = 0;
  std::uint64_t size = 0;
  std::string buildID; ///< hexadecimal; empty for a file that carries none

  [[nodiscard]] bool contains(std::uint64_t place) const { return place >= address && place - address < size; }
};

inline constexpr std::size_t mostModules = 256;

/// The program and the libraries that are loaded now, the program first, `mostModules` of them at most. Not for signal
/// handlers.
[[nodiscard]] std::vector<Module> loadedModules();

} // namespace tabwright::crashreport
