// Reading collects bytes up to a line feed; a line beyond the bound is dropped piece by piece. Writing goes through a
// queue whose first text is under way. Reads and writes under way keep the channel alive, so that the stream may be
// destroyed at any time. Bytes are searched once and moved seldom: `start_` goes from line to line, and what is before
// it goes away when more has to be read.
#include "rpc/LineStream.h"

#include "platform/JSONFailure.h"
#include "platform/JSONText.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/json/serialize.hpp>
#include <boost/system/system_error.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <deque>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <utility>

namespace tabwright::rpc {

namespace asio = boost::asio;
using boost::system::error_code;

namespace {

constexpr std::size_t readAtOnce = std::size_t{64} << 10;
// Kept between messages, so that usual ones need no memory of their own each time.
constexpr std::size_t usualCapacity = std::size_t{1} << 20;
constexpr std::string_view whiteSpace = " \t\r\n";

/// One end of the stream: a descriptor whose mode is put back.
class Descriptor {
public:
  Descriptor(const asio::any_io_executor& executor, int descriptor)
      : mode_(::fcntl(descriptor, F_GETFL)), stream_(executor, descriptor) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  void close() {
    if (!stream_.is_open())
      return;
    error_code ignored;
    stream_.cancel(ignored);
    // Asio has made it non-blocking, and the mode belongs to the open file: a shell that shares it would find its
    // terminal so.
    ::fcntl(stream_.native_handle(), F_SETFL, mode_);
    stream_.close(ignored);
  }

  [[nodiscard]] asio::posix::stream_descriptor& stream() { return stream_; }

private:
  int mode_;
  asio::posix::stream_descriptor stream_;
};

// The envelope is looked for only in a line that can't be read: a message has its own.
ReceivedMessage parsed(std::string_view line) {
  try {
    return platform::parseJSON(line);
  } catch (const platform::JSONFailure& failure) {
    return std::unexpected(
        UnreadableMessage{RpcError(ErrorCode::parseError, failure.errorDescription()), envelopeOf(line)});
  }
}

} // namespace

class LineStream::Channel : public std::enable_shared_from_this<LineStream::Channel> {
public:
  Channel(const asio::any_io_executor& executor, int input, int output, Bounds bounds)
      : bounds_(bounds), input_(executor, input), output_(executor, output), emptied_(executor) {}

  platform::Task<std::optional<ReceivedMessage>> receive() {
    const auto self = shared_from_this();
    for (;;) {
      while (std::optional<std::string> line = nextLine()) {
        if (isSkipping_) {
          isSkipping_ = false;
          skipped_ = 0;
          continue;
        }
        if (line->size() > bounds_.message)
          co_return tooLong(*line);
        if (line->find_first_not_of(whiteSpace) != std::string::npos)
          co_return parsed(*line);
      }
      if (isSkipping_) {
        skipped_ += received_.size() - start_;
        // A sender that goes on for ever in one line is given up.
        if (skipped_ > bounds_.skipped)
          co_return std::nullopt;
        forget();
      }
      // Refused before its end has come: a sender that never ends its line would otherwise be collected for ever.
      if (received_.size() - start_ > bounds_.message) {
        ReceivedMessage refused = tooLong(std::string_view(received_).substr(start_));
        forget();
        isSkipping_ = true;
        co_return refused;
      }
      if (!co_await readMore())
        co_return std::nullopt;
    }
  }

  void send(const boost::json::value& message) {
    if (isClosed_)
      return;
    std::string line = boost::json::serialize(message) + '\n';
    // A single message may be larger than the bound, so an empty queue takes any.
    if (!queue_.empty() && queued_ + line.size() > bounds_.unread)
      return close();
    queued_ += line.size();
    // A deque, whose texts stay where they are while others are added: one of them is being written.
    queue_.push_back(std::move(line));
    if (queue_.size() == 1)
      write();
  }

  platform::Task<void> flush(std::chrono::nanoseconds atMost) {
    const auto self = shared_from_this();
    if (isClosed_ || queue_.empty())
      co_return;
    // Waits for a cancellation by `hasWritten` or `close`; the timer's own end is the bound.
    emptied_.expires_after(atMost);
    co_await emptied_.async_wait(asio::as_tuple(asio::use_awaitable));
  }

  void close() {
    if (std::exchange(isClosed_, true))
      return;
    input_.close();
    output_.close();
    emptied_.cancel();
  }

  [[nodiscard]] error_code writeError() const { return writeError_; }

private:
  // The next whole line among the bytes that have come. Bytes that were searched in vain aren't searched again.
  std::optional<std::string> nextLine() {
    const std::size_t end = received_.find('\n', searched_);
    if (end == std::string::npos) {
      searched_ = received_.size();
      return std::nullopt;
    }
    std::string line = received_.substr(start_, end - start_);
    start_ = searched_ = end + 1;
    return line;
  }

  /// Reads some bytes behind those that wait to be cut into lines. False at the end.
  platform::Task<bool> readMore() {
    received_.erase(0, start_);
    searched_ -= std::exchange(start_, 0);
    // One long message must not keep its room for the life of a connection that is otherwise idle.
    if (received_.capacity() > usualCapacity && received_.size() < readAtOnce)
      received_.shrink_to_fit();
    if (isClosed_)
      co_return false;
    auto [error, count] =
        co_await input_.stream().async_read_some(asio::buffer(chunk_), asio::as_tuple(asio::use_awaitable));
    // Closing aborts the read too, and is an ordinary end; only a cancelled caller is thrown to.
    if (error == asio::error::operation_aborted && !isClosed_)
      throw boost::system::system_error(error);
    if (error || isClosed_)
      co_return false;
    received_.append(chunk_.data(), count);
    co_return true;
  }

  void forget() {
    received_.clear();
    received_.shrink_to_fit();
    start_ = searched_ = 0;
  }

  [[nodiscard]] ReceivedMessage tooLong(std::string_view begin) const {
    return std::unexpected(UnreadableMessage{
        RpcError(ErrorCode::invalidRequest, fmt::format("The message is longer than {} bytes.", bounds_.message)),
        envelopeOf(begin)});
  }

  void write() {
    asio::async_write(output_.stream(), asio::buffer(queue_.front()),
                      [self = shared_from_this()](const error_code& error, std::size_t) { self->hasWritten(error); });
  }

  void hasWritten(const error_code& error) {
    // Also when the stream was closed meanwhile: the text that was under way lies in the queue until here.
    queued_ -= queue_.front().size();
    queue_.pop_front();
    if (isClosed_)
      return;
    if (error) {
      writeError_ = error;
      return close();
    }
    if (queue_.empty())
      emptied_.cancel();
    else
      write();
  }

  const Bounds bounds_;
  Descriptor input_;
  Descriptor output_;
  std::array<char, readAtOnce> chunk_{};
  std::string received_;
  std::size_t start_ = 0;    ///< of the first line that isn't cut off yet
  std::size_t searched_ = 0; ///< there is no line feed between the start and here
  std::size_t skipped_ = 0;  ///< bytes of the line that is skipped
  bool isSkipping_ = false;  ///< the bytes up to the next line feed belong to a line that was refused
  std::deque<std::string> queue_;
  std::size_t queued_ = 0;
  error_code writeError_;
  asio::steady_timer emptied_; ///< cancelled when the queue is empty
  bool isClosed_ = false;
};

LineStream::LineStream(const asio::any_io_executor& executor, int input, int output)
    : LineStream(executor, input, output, Bounds{}) {}

LineStream::LineStream(const asio::any_io_executor& executor, int input, int output, Bounds bounds)
    : channel_(std::make_shared<Channel>(executor, input, output, bounds)) {}

LineStream::~LineStream() {
  channel_->close();
}

platform::Task<std::optional<ReceivedMessage>> LineStream::receive() {
  return channel_->receive();
}

void LineStream::send(const boost::json::value& message) {
  channel_->send(message);
}

platform::Task<void> LineStream::flush(std::chrono::nanoseconds atMost) {
  return channel_->flush(atMost);
}

void LineStream::close() {
  channel_->close();
}

error_code LineStream::writeError() const {
  return channel_->writeError();
}

} // namespace tabwright::rpc
