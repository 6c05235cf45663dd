#pragma once

/// The agreement of the thin client `tabwright` and the background host, beside JSON-RPC 2.0 in lines on a Unix socket
/// (rpc/LineStream.h). Other programs speak the Model Context Protocol on the same socket and need none of this.
///
/// The client connects and sends one request:
///
///     tabwright/run {version, arguments: [words behind "run"], directory,
///                    terminal: {input: bool, output: bool, width: int}}
///
/// where `terminal` says which standard streams are one and how wide it is, and is answered with {output, error,
/// exitCode}: what goes to its standard output and standard error, and what it exits with. Closing the connection
/// cancels the action. In between the host may send
///
///     tabwright/started          notification: the action is about to begin. A connection that ends before it has done
///                                nothing, and may be tried again
///     tabwright/print {output, error}   notification: what goes to standard output and standard error already now
///     tabwright/ask {question}   answered with {answer}: the line that the user typed, null when nobody is there
///     tabwright/read {file}      answered with {content}, or {operation, errorNumber}: what was refused, "open" or
///                                "read", and the errno value. "-" is standard input
///
/// A host that has ended its service for newcomers, such as one that is older than the client, answers the request with
/// the error `leavingError`; the client connects anew, and finds or starts the next host.
namespace tabwright::client {

namespace protocol {
inline constexpr const char* run = "tabwright/run";
inline constexpr const char* started = "tabwright/started";
inline constexpr const char* print = "tabwright/print";
inline constexpr const char* ask = "tabwright/ask";
inline constexpr const char* read = "tabwright/read";
inline constexpr int leavingError = -32010;
} // namespace protocol

/// The start of the host: "tabwright-host serve SOCKET", with two descriptors that it inherits. The socket listens
/// at the path SOCKET already; the lock beside it, of the same name but for the ending, says that there is a host, and
/// is held for its life. Whoever holds it may remove both, the socket first.
namespace handover {
inline constexpr const char* program = "tabwright-host";
inline constexpr const char* command = "serve";
inline constexpr const char* socketEnding = ".socket";
inline constexpr const char* lockEnding = ".lock";
inline constexpr int socketDescriptor = 3;
inline constexpr int lockDescriptor = 4;
} // namespace handover

} // namespace tabwright::client
