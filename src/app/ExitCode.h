#pragma once

namespace tabwright::app {

/// The result that the process tells its caller, as documented in the manual. A failure's class decides it
/// (`exitCodeOf`); both programs and workflows keep to it.
enum class ExitCode : int {
  done = 0,
  failed = 1,    ///< the action or the script failed
  wrongUse = 2,  ///< an unknown name, a wrong value, a missing value
  noBrowser = 3, ///< no browser could be reached
  /// By SIGINT, SIGTERM or SIGHUP alike: 128 and the number of SIGINT, as shells tell it.
  interrupted = 130,
};

} // namespace tabwright::app
