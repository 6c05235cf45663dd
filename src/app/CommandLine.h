#pragma once

namespace tabwright::app {

/// The whole of `tabwright`: reads the arguments, does what they say, returns the exit code (ExitCode.h).
///
/// Results go to standard output, everything else to standard error. Throws nothing. From here on the process ignores
/// SIGPIPE; when the reader of a pipe has gone, it ends by that signal without a word. Called once, before there are
/// other threads.
[[nodiscard]] int runCommandLine(int argumentCount, char** arguments);

} // namespace tabwright::app
