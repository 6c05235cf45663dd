#pragma once

#include <optional>
#include <string>

namespace tabwright::client {

/// All that the host leaves to the process that called it: its terminal, its files, its standard streams.

/// The facts of the terminal that the host needs. Each stream may be one or none, by itself.
struct TerminalFacts {
  bool isInput = false;  ///< standard input is one: there is somebody to ask
  bool isOutput = false; ///< standard output is one
  bool isError = false;  ///< standard error is one
  int width = 80;        ///< its cells; 80 when they can't be told
};
[[nodiscard]] TerminalFacts terminalFacts();

/// Asks the person at the terminal and yields the line typed, without its line feed, as the bytes that came; nothing
/// when standard input is no terminal or has ended. Blocks.
[[nodiscard]] std::optional<std::string> askAtTerminal(const std::string& question);

/// The whole of a file or stream that was read, or what was refused.
struct FileContent {
  std::string content;
  const char* refused = nullptr; ///< null, or the operation that failed: "open", "read"
  int errorNumber = 0;
};
/// Reads a file, or standard input for "-". Content that is no UTF-8 is refused with EILSEQ, and what doesn't fit in a
/// message to the host with EFBIG.
[[nodiscard]] FileContent readContent(const std::string& file);

} // namespace tabwright::client
