#pragma once

namespace tabwright::app {

/// The whole of `tabwright`: reads the arguments, does what they say, returns the exit code (ExitCode.h).
///
/// Results go to standard output, everything else to standard error. Throws nothing.
[[nodiscard]] int runCommandLine(int argumentCount, char** arguments);

} // namespace tabwright::app
