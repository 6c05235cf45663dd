#pragma once

#include "rpc/MessageStream.h"

#include <boost/asio/any_io_executor.hpp>
#include <boost/system/error_code.hpp>

#include <cstddef>
#include <memory>

namespace tabwright::rpc {

/// Messages as lines: each a JSON text without line feeds, in UTF-8, ended by a line feed. This is the stdio transport
/// of the Model Context Protocol (https://modelcontextprotocol.io, "Transports"), and serves sockets as well.
///
///     LineStream stream(executor, ::dup(STDIN_FILENO), ::dup(STDOUT_FILENO));
///     LineStream stream(executor, socket, ::dup(socket));
///
/// Lines of white space are skipped. A line that is too long is refused once its first bytes beyond the bound have
/// come, and skipped up to its end without being held. Nesting is bounded as everywhere (`platform::deepestJSON`).
///
/// The descriptors may be pipes, sockets, terminals or files. While the stream lives they don't block; their mode is
/// put back when it ends, as others may share it. Writing to a pipe or socket that nobody reads raises SIGPIPE: a
/// process that serves streams ignores that signal.
class LineStream final : public MessageStream {
public:
  /// Each bounds what one side can make this process hold or do, however it behaves.
  struct Bounds {
    std::size_t message = std::size_t{16} << 20; ///< bytes of the longest line taken
    std::size_t skipped = std::size_t{1} << 30;  ///< bytes of a longer line that are read past, before its sender is
                                                 ///< given up
    std::size_t unread = std::size_t{64} << 20;  ///< bytes queued for a peer that doesn't read, before it is given up;
                                                 ///< a single message may be larger
  };

  /// Takes both descriptors over, and closes them in the end. They are two different ones.
  /// Throws `boost::system::system_error` for descriptors that aren't open.
  LineStream(const boost::asio::any_io_executor& executor, int input, int output);
  /// The same with other bounds.
  LineStream(const boost::asio::any_io_executor& executor, int input, int output, Bounds bounds);
  /// Ends the stream as `close` does; a `receive` that is under way yields nothing.
  ~LineStream() override;

  /// Reads as much as there is at once; lines behind the first wait here for the next call.
  platform::Task<std::optional<ReceivedMessage>> receive() override;
  /// One line. A message that would leave more than `Bounds::unread` queued behind others ends the stream instead.
  void send(const boost::json::value& message) override;
  platform::Task<void> flush(std::chrono::nanoseconds atMost) override;
  void close() override;

  /// The error that ended the stream, where a message couldn't be written; else success. A peer that has left is
  /// `broken_pipe` or `connection_reset`.
  [[nodiscard]] boost::system::error_code writeError() const;

private:
  class Channel;
  std::shared_ptr<Channel> channel_;
};

} // namespace tabwright::rpc
