#pragma once

#include "crashreport/CrashRecord.h"
#include "crashreport/LoadedModules.h"
#include "crashreport/ReportOptions.h"
#include "crashreport/ReportSpool.h"
#include "crashreport/StackWalk.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::crashreport {

/// All that a report tells. It holds names of the program's own and numbers: no address or title of a page, no
/// selector, no text of a script or of the user's, no path of a file, and nothing of the memory of the process but code
/// addresses.
struct ReportEvent {
  enum class Level { fatal, error, info };

  struct Signal {
    int number = 0;
    int code = 0;
  };
  struct Exception {
    std::string type;                    ///< of the failure, as in "FileFailure"; or the signal's name
    std::string value;                   ///< which case of it and its number, as in "write (28)"; may be empty
    std::optional<Signal> signal;        ///< that ended the process
    std::vector<StackFrame> frames = {}; ///< innermost first
  };

  std::string id = newReportID();
  std::uint64_t seconds = 0; ///< since 1970, when it happened
  Level level = Level::error;
  ProgramFacts program;
  std::string message; ///< empty where there is an exception
  std::optional<Exception> exception = {};
  std::vector<Module> modules = {};

  /// An error that the program went on after. One of our catalogues is told by its type, case and number, any other by
  /// the name of its C++ type alone: sentences hold what the user works on.
  [[nodiscard]] static ReportEvent of(const std::exception& error, const ProgramFacts& program);
  [[nodiscard]] static ReportEvent of(std::string_view message, const ProgramFacts& program);
  /// The end of a process by a signal. Frames in no known module are left out, and modules in which no frame lies.
  [[nodiscard]] static ReportEvent of(const CrashRecord& record);
};

/// The event as an envelope of one item, by https://develop.sentry.dev/sdk/data-model/envelopes/ and
/// https://develop.sentry.dev/sdk/data-model/event-payloads/. It doesn't say where it is to be sent.
[[nodiscard]] std::string envelopeOf(const ReportEvent& event);

} // namespace tabwright::crashreport
