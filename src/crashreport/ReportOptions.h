#pragma once

#include "crashreport/Dsn.h"
#include "crashreport/ReportSpool.h"

#include <filesystem>
#include <string>

namespace tabwright::crashreport {

/// The facts of the program that each report carries.
struct ProgramFacts {
  std::string releaseName; ///< as in "0.1.0 (1)"
  std::string dist;        ///< the build number
  std::string environment; ///< the channel, as in "Beta"
};

/// The options of error reports. Hangs, slow files and traces are not watched, and neither are requests that fail,
/// since the program makes none of its own; reports of the system about the program don't exist here.
struct ReportOptions {
  Dsn dsn;
  ProgramFacts program;
  std::filesystem::path spoolFolder = ReportSpool::defaultFolder();
};

} // namespace tabwright::crashreport
