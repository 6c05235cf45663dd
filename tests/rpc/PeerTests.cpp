// A peer at one end of a stream, and a script that speaks raw messages at the other.
#include "rpc/Peer.h"
#include "support/MemoryStream.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace asio = boost::asio;
namespace json = boost::json;
using tabwright::platform::Task;
using tabwright::rpc::ErrorCode;
using tabwright::rpc::Peer;
using tabwright::rpc::RpcError;
using tabwright::testsupport::MemoryStream;

class OrdinaryFailure final : public tabwright::platform::Failure {
public:
  [[nodiscard]] std::string errorDescription() const override { return "It can't be done"; }
  [[nodiscard]] tabwright::platform::FailureIdentity identity() const override { return {"Test", "ordinary", {}}; }
};

class PeerTests : public testing::Test {
protected:
  asio::io_context context_{1};
  MemoryStream ours_{context_.get_executor()};
  std::unique_ptr<MemoryStream> theirs_ = ours_.otherEnd();
  Peer peer_{ours_, 3};
  asio::cancellation_signal cancelRun_;
  std::exception_ptr runFailure_;
  bool runHasEnded_ = false;
  std::vector<std::string> cancelled_; ///< handlers that ended because they were cancelled

  PeerTests() {
    peer_.onRequest("echo", [](json::object params) -> Task<json::value> { co_return params; });
    peer_.onRequest("fail", [](json::object params) { return fail(std::move(params)); });
    peer_.onRequest("hang", [this](json::object params) { return hang(std::move(params)); });
    peer_.onRequest("ask", [this](json::object params) { return peer_.request("question", std::move(params)); });
  }

  static Task<json::value> fail(json::object params) {
    const auto kind = params.at("kind").as_string();
    if (kind == "rpc")
      throw RpcError(ErrorCode::invalidParams, "wrong", json::object{{"name", "x"}});
    if (kind == "failure")
      throw OrdinaryFailure();
    throw std::runtime_error("out of order");
    co_return nullptr;
  }

  Task<json::value> hang(json::object params) {
    asio::steady_timer never(co_await asio::this_coro::executor, asio::steady_timer::time_point::max());
    try {
      co_await never.async_wait(asio::use_awaitable);
    } catch (const boost::system::system_error&) {
      cancelled_.emplace_back(params.at("name").as_string());
      throw;
    }
    co_return nullptr;
  }

  Task<std::string> receive() {
    auto received = co_await theirs_->receive();
    co_return received ? json::serialize(received->value()) : "the end";
  }

  /// Runs the peer against the script, which stands at the other end and hangs up when it is done.
  void converse(const std::function<Task<void>()>& script) {
    asio::co_spawn(context_, peer_.run(),
                   asio::bind_cancellation_slot(cancelRun_.slot(), [this](std::exception_ptr thrown) {
                     runHasEnded_ = true;
                     runFailure_ = std::move(thrown);
                   }));
    std::exception_ptr failure = std::make_exception_ptr(std::logic_error("the script never came to its end"));
    asio::co_spawn(context_, script(), [&](std::exception_ptr thrown) {
      failure = std::move(thrown);
      theirs_->close();
    });
    context_.run();
    if (failure)
      std::rethrow_exception(failure);
    EXPECT_TRUE(runHasEnded_);
  }
};

TEST_F(PeerTests, answersEachMessageAsJsonRpcHasIt) {
  struct Row {
    const char* message;
    const char* answer;
  };
  static constexpr Row rows[]{
      {R"({"jsonrpc":"2.0","id":1,"method":"echo","params":{"a":[1]}})",
       R"({"jsonrpc":"2.0","id":1,"result":{"a":[1]}})"},
      {R"({"jsonrpc":"2.0","id":"x","method":"echo"})", R"({"jsonrpc":"2.0","id":"x","result":{}})"},
      {R"({"jsonrpc":"2.0","id":2,"method":"nothing"})",
       R"({"jsonrpc":"2.0","id":2,"error":{"code":-32601,"message":"There is no method nothing."}})"},
      {R"({"jsonrpc":"2.0","id":3,"method":"echo","params":[1]})",
       R"({"jsonrpc":"2.0","id":3,"error":{"code":-32602,"message":"\"params\" must be an object."}})"},
      {R"({"jsonrpc":"2.0","id":4,"method":"fail","params":{"kind":"rpc"}})",
       R"({"jsonrpc":"2.0","id":4,"error":{"code":-32602,"message":"wrong","data":{"name":"x"}}})"},
      {R"({"jsonrpc":"2.0","id":5,"method":"fail","params":{"kind":"failure"}})",
       R"({"jsonrpc":"2.0","id":5,"error":{"code":-32603,"message":"It can't be done"}})"},
      {R"({"jsonrpc":"2.0","id":6,"method":"fail","params":{"kind":"other"}})",
       R"({"jsonrpc":"2.0","id":6,"error":{"code":-32603,"message":"out of order"}})"},
      {R"({"jsonrpc":"2.0","id":null,"method":"echo"})",
       R"({"jsonrpc":"2.0","id":null,"error":{"code":-32600,"message":"The id of a request is a text or a number."}})"},
      {R"({"jsonrpc":"2.0","id":7,"method":5})",
       R"({"jsonrpc":"2.0","id":7,"error":{"code":-32600,"message":"A message has a method."}})"},
      {R"({"id":8,"method":"echo"})",
       R"({"jsonrpc":"2.0","id":8,"error":{"code":-32600,"message":"\"jsonrpc\" must be \"2.0\"."}})"},
      {R"([{"jsonrpc":"2.0","id":9,"method":"echo"}])",
       R"({"jsonrpc":"2.0","id":null,"error":{"code":-32600,"message":"A message is an object; batches are not taken."}})"},
      {R"("hello")",
       R"({"jsonrpc":"2.0","id":null,"error":{"code":-32600,"message":"A message is an object; batches are not taken."}})"},
  };
  converse([&]() -> Task<void> {
    for (const Row& row : rows) {
      theirs_->sendText(row.message);
      EXPECT_EQ(co_await receive(), row.answer);
    }
    theirs_->sendUnreadable();
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":null,"error":{"code":-32700,"message":"no JSON"}})");
    // Nobody is answered to these, so the next answer is that to the request behind them.
    theirs_->sendText(R"({"jsonrpc":"2.0","method":"nothing"})");
    theirs_->sendText(R"({"jsonrpc":"2.0","method":"nothing","params":[1]})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":77,"result":{}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":12}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":10,"method":"echo"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":10,"result":{}})");
  });
  EXPECT_FALSE(runFailure_);
}

TEST_F(PeerTests, cancelsOneHandlerAndLeavesTheOthers) {
  converse([&]() -> Task<void> {
    theirs_->sendText(R"({"jsonrpc":"2.0","id":1,"method":"hang","params":{"name":"first"}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":"1","method":"hang","params":{"name":"second"}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":2,"method":"echo"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":2,"result":{}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":"1"}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":3,"method":"echo"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":3,"result":{}})");
    EXPECT_EQ(cancelled_, std::vector<std::string>{"second"});
    // One that hasn't begun when it is cancelled never does.
    theirs_->sendText(R"({"jsonrpc":"2.0","id":4,"method":"hang","params":{"name":"third"}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":4}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":5,"method":"echo"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":5,"result":{}})");
  });
  EXPECT_EQ(cancelled_.front(), "second");
  EXPECT_EQ(cancelled_.back(), "first") << "the end of the stream stops what runs";
}

TEST_F(PeerTests, boundsWhatRunsAtOnceAndRefusesAnIdInUse) {
  converse([&]() -> Task<void> {
    theirs_->sendText(R"({"jsonrpc":"2.0","id":1,"method":"hang","params":{"name":"a"}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":1,"method":"hang","params":{"name":"b"}})");
    EXPECT_EQ(co_await receive(),
              R"({"jsonrpc":"2.0","id":1,"error":{"code":-32600,"message":"A request with this id is under way."}})");
    for (const int id : {2, 3, 4})
      theirs_->send(
          json::object{{"jsonrpc", "2.0"}, {"id", id}, {"method", "hang"}, {"params", {{"name", std::to_string(id)}}}});
    EXPECT_EQ(co_await receive(),
              R"({"jsonrpc":"2.0","id":4,"error":{"code":-32000,"message":"Too many requests are under way."}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":2}})");
    while (cancelled_.empty())
      co_await asio::post(context_, asio::use_awaitable);
    theirs_->sendText(R"({"jsonrpc":"2.0","id":5,"method":"echo"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":5,"result":{}})");
  });
  EXPECT_EQ(cancelled_, (std::vector<std::string>{"2", "a", "3"}));
}

TEST_F(PeerTests, asksTheOtherSide) {
  converse([&]() -> Task<void> {
    theirs_->sendText(R"({"jsonrpc":"2.0","id":7,"method":"ask","params":{"about":"x"}})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":1,"method":"question","params":{"about":"x"}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":1,"result":[42]})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":7,"result":[42]})");

    theirs_->sendText(R"({"jsonrpc":"2.0","id":8,"method":"ask"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":2,"method":"question","params":{}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":2,"error":{"code":5,"message":"no idea","data":1}})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":8,"error":{"code":5,"message":"no idea","data":1}})");

    // A cancelled request takes the question back that it has asked.
    theirs_->sendText(R"({"jsonrpc":"2.0","id":9,"method":"ask"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":3,"method":"question","params":{}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":9}})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":3}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":3,"result":"too late"})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":10,"method":"echo"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":10,"result":{}})");

    theirs_->sendText(R"({"jsonrpc":"2.0","id":11,"method":"ask"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":4,"method":"question","params":{}})");
    theirs_->sendUnreadable({.id = 4, .hasMethod = true}); // a request of theirs, which has numbers of its own
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":4,"error":{"code":-32700,"message":"no JSON"}})");
    theirs_->sendUnreadable({.id = 4});
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":11,"error":{"code":-32700,"message":"no JSON"}})");
  });
}

TEST_F(PeerTests, tellsWaitersThatTheStreamHasEnded) {
  int code = 0;
  int codeAfterwards = 0;
  const auto ask = [&](int& heard) -> Task<void> {
    try {
      co_await peer_.request("question", {});
    } catch (const RpcError& error) {
      heard = error.code();
    }
  };
  converse([&]() -> Task<void> {
    asio::co_spawn(context_, ask(code), [](std::exception_ptr) {});
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":1,"method":"question","params":{}})");
  });
  context_.restart();
  asio::co_spawn(context_, ask(codeAfterwards), [](std::exception_ptr) {});
  context_.run();
  EXPECT_EQ(code, static_cast<int>(ErrorCode::connectionEnded));
  EXPECT_EQ(codeAfterwards, static_cast<int>(ErrorCode::connectionEnded));
}

TEST_F(PeerTests, endsItsHandlersWhenItIsCancelled) {
  converse([&]() -> Task<void> {
    theirs_->sendText(R"({"jsonrpc":"2.0","id":1,"method":"hang","params":{"name":"a"}})");
    theirs_->sendText(R"({"jsonrpc":"2.0","id":2,"method":"echo"})");
    EXPECT_EQ(co_await receive(), R"({"jsonrpc":"2.0","id":2,"result":{}})");
    cancelRun_.emit(asio::cancellation_type::all);
    while (!runHasEnded_)
      co_await asio::post(context_, asio::use_awaitable);
    EXPECT_EQ(cancelled_, std::vector<std::string>{"a"});
  });
  EXPECT_THROW(std::rethrow_exception(runFailure_), boost::system::system_error);
}

} // namespace
