#pragma once

#include "crashreport/LoadedModules.h"
#include "crashreport/ReportOptions.h"
#include "crashreport/StackWalk.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::crashreport {

/// The record that a crashed process has left, as lines of text. The first is written ahead, since it takes more than a
/// signal handler may do: the facts of the program and its modules as JSON. The handler adds
///
///     crash SIGNAL CODE SECONDS     as in sigaction(2), and the time since 1970
///     frame ORIGIN ADDRESS          any number of times (StackFrame), the address in hexadecimal
struct CrashRecord {
  static constexpr std::size_t mostFrames = 128;

  ProgramFacts program;
  std::vector<Module> modules;
  int signal = 0;
  int code = 0;
  std::uint64_t seconds = 0;
  std::vector<StackFrame> frames; ///< innermost first

  /// Reads a record as far as it goes: lines behind the first that can't be read are left out. Nothing for a record
  /// without facts or crash.
  [[nodiscard]] static std::optional<CrashRecord> parse(std::string_view text);
};

/// The first line of a record, with its line feed.
[[nodiscard]] std::string crashRecordHead(const ProgramFacts& program, const std::vector<Module>& modules);

} // namespace tabwright::crashreport
