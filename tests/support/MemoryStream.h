#pragma once

#include "rpc/MessageStream.h"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/json/parse.hpp>
#include <boost/system/system_error.hpp>

#include <deque>
#include <memory>
#include <string_view>
#include <utility>

namespace tabwright::testsupport {

/// One of two ends of a conversation inside the process: what one end sends, the other receives.
class MemoryStream final : public rpc::MessageStream {
public:
  explicit MemoryStream(const boost::asio::any_io_executor& executor)
      : inbox_(std::make_shared<Inbox>(executor)), outbox_(std::make_shared<Inbox>(executor)) {}

  /// The other end; once.
  [[nodiscard]] std::unique_ptr<MemoryStream> otherEnd() const {
    return std::unique_ptr<MemoryStream>(new MemoryStream(outbox_, inbox_));
  }

  platform::Task<std::optional<rpc::ReceivedMessage>> receive() override {
    const auto inbox = inbox_;
    while (inbox->messages.empty() && !inbox->isEnded) {
      const auto [error] = co_await inbox->arrived.async_wait(boost::asio::as_tuple(boost::asio::use_awaitable));
      if (inbox->messages.empty() && !inbox->isEnded)
        throw boost::system::system_error(error);
    }
    if (inbox->messages.empty())
      co_return std::nullopt;
    auto message = std::move(inbox->messages.front());
    inbox->messages.pop_front();
    co_return message;
  }

  void send(const boost::json::value& message) override { put(message); }
  void sendText(std::string_view text) { put(boost::json::parse(text)); }
  void sendUnreadable(rpc::Envelope envelope = {}) {
    put(std::unexpected(
        rpc::UnreadableMessage{rpc::RpcError(rpc::ErrorCode::parseError, "no JSON"), std::move(envelope)}));
  }

  platform::Task<void> flush(std::chrono::nanoseconds) override { co_return; }

  void close() override {
    for (const auto& box : {inbox_, outbox_}) {
      box->isEnded = true;
      box->arrived.cancel();
    }
  }

private:
  struct Inbox {
    explicit Inbox(const boost::asio::any_io_executor& executor)
        : arrived(executor, boost::asio::steady_timer::time_point::max()) {}
    std::deque<rpc::ReceivedMessage> messages;
    boost::asio::steady_timer arrived;
    bool isEnded = false;
  };

  MemoryStream(std::shared_ptr<Inbox> inbox, std::shared_ptr<Inbox> outbox)
      : inbox_(std::move(inbox)), outbox_(std::move(outbox)) {}

  void put(rpc::ReceivedMessage message) {
    if (outbox_->isEnded)
      return;
    outbox_->messages.push_back(std::move(message));
    outbox_->arrived.cancel();
  }

  std::shared_ptr<Inbox> inbox_;
  std::shared_ptr<Inbox> outbox_;
};

} // namespace tabwright::testsupport
