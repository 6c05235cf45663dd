#pragma once

#include <string>
#include <string_view>

namespace tabwright::client {

/// Standard output and standard error as every program of ours writes them: what a terminal gets can't steer it, and
/// what can't be written is known.

/// Occupies the standard streams that the caller has closed, so that no file or socket gets their numbers; using them
/// goes on failing. Called before anything is opened.
void occupyClosedStreams();

/// Writes all of a text to a descriptor as it stands, and blocks until it is taken. Yields 0, or the errno value of
/// what failed; part of the text may have gone out then.
[[nodiscard]] int writeAll(int descriptor, std::string_view text);

/// The same, as `terminalText` where the descriptor is a terminal.
[[nodiscard]] int writeText(int descriptor, std::string_view text);

/// The sentence about standard output that can't be written.
[[nodiscard]] std::string notWritten(int errorNumber);

/// Ends the process as writing to a pipe that nobody reads ends others: by SIGPIPE, without a word.
[[noreturn]] void endByBrokenPipe();

} // namespace tabwright::client
