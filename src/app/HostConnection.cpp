// A connection is a peer on a stream of lines. The actions of both kinds of programs are handlers of that peer, so that
// it cancels them when the stream ends. Which kind a program is shows in the methods that it calls.
#include "app/HostConnection.h"

#include "app/FailureReport.h"
#include "app/RunAction.h"
#include "app/TextInput.h"
#include "client/HostProtocol.h"
#include "host/mcp/ToolServer.h"
#include "platform/linux/SystemClock.h"
#include "rpc/LineStream.h"
#include "rpc/Peer.h"
#include "rpc/RpcError.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/post.hpp>
#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <algorithm>
#include <atomic>
#include <exception>
#include <fcntl.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::app {

namespace asio = boost::asio;
namespace json = boost::json;
namespace protocol = client::protocol;
using rpc::ErrorCode;
using rpc::RpcError;

namespace {

constexpr std::int64_t widestTerminal = 10'000;

/// A stream that remembers whether anything came. It is written on the connection's strand and read by the server, on
/// another thread.
class WatchedStream final : public rpc::MessageStream {
public:
  explicit WatchedStream(rpc::MessageStream& stream) : stream_(stream) {}

  platform::Task<std::optional<rpc::ReceivedMessage>> receive() override {
    std::optional<rpc::ReceivedMessage> message = co_await stream_.receive();
    hasReceived_ = hasReceived_ || message;
    co_return message;
  }
  void send(const json::value& message) override { stream_.send(message); }
  platform::Task<void> flush(std::chrono::nanoseconds atMost) override { return stream_.flush(atMost); }
  void close() override { stream_.close(); }

  [[nodiscard]] bool hasReceived() const { return hasReceived_; }

private:
  rpc::MessageStream& stream_;
  std::atomic<bool> hasReceived_ = false;
};

[[noreturn]] void refuse(const std::string& what) {
  throw RpcError(ErrorCode::invalidParams, std::string(protocol::run) + " needs " + what + ".");
}

const json::value& member(const json::object& object, std::string_view name, json::kind kind, const char* what) {
  const json::value* value = object.if_contains(name);
  // Strict: whoever sends this is a client of ours, or a program that should learn what is wrong.
  if (!value || value->kind() != kind)
    refuse(what);
  return *value;
}

std::vector<std::string> wordsIn(const json::object& params) {
  std::vector<std::string> words;
  for (const json::value& word :
       member(params, "arguments", json::kind::array, "“arguments”, a list of texts").as_array()) {
    if (!word.is_string())
      refuse("“arguments”, a list of texts");
    words.emplace_back(word.get_string());
  }
  return words;
}

struct Terminal {
  bool isInput = false;
  bool isOutput = false;
  std::size_t width = 0;
};

Terminal terminalIn(const json::object& params) {
  const json::object& terminal = member(params, "terminal", json::kind::object, "“terminal”, an object").as_object();
  const std::int64_t width = member(terminal, "width", json::kind::int64, "“terminal.width”, a number").as_int64();
  return {.isInput = member(terminal, "input", json::kind::bool_, "“terminal.input”, a boolean").as_bool(),
          .isOutput = member(terminal, "output", json::kind::bool_, "“terminal.output”, a boolean").as_bool(),
          .width = static_cast<std::size_t>(std::clamp(width, std::int64_t{1}, widestTerminal))};
}

std::string textIn(const json::object& params, const char* name) {
  return std::string(member(params, name, json::kind::string, "“version” and “directory”, both texts").as_string());
}

/// The client, as far as only it can do something.
class ClientProcess final : public RunCaller {
public:
  ClientProcess(rpc::Peer& peer, bool canAsk) : peer_(peer), canAsk_(canAsk) {}

  platform::Task<std::string> read(std::string file) override {
    json::object params{{"file", file}}; // named, for g++ 12 takes a braced list behind co_await for an array
    const json::value answer = co_await peer_.request(protocol::read, std::move(params));
    const json::object* object = answer.if_object();
    const json::value* content = object ? object->if_contains("content") : nullptr;
    if (content && content->is_string())
      co_return std::string(content->get_string());
    const json::value* operation = object ? object->if_contains("operation") : nullptr;
    const json::value* number = object ? object->if_contains("errorNumber") : nullptr;
    // The client tells what the system refused; the sentence is made here, as in a process of its own.
    throw unreadable(operation && operation->is_string() ? std::string(operation->get_string()) : "read", file,
                     number && number->is_int64() ? static_cast<int>(number->get_int64()) : EIO);
  }

  [[nodiscard]] bool canAsk() const override { return canAsk_; }

  platform::Task<std::optional<std::string>> ask(std::string question) override {
    json::object params{{"question", question}};
    const json::value answer = co_await peer_.request(protocol::ask, std::move(params));
    const json::object* object = answer.if_object();
    const json::value* line = object ? object->if_contains("answer") : nullptr;
    if (!line || !line->is_string())
      co_return std::nullopt;
    co_return std::string(line->get_string());
  }

  void print(std::string output, std::string error) override {
    peer_.notify(protocol::print, {{"output", std::move(output)}, {"error", std::move(error)}});
  }

private:
  rpc::Peer& peer_;
  const bool canAsk_;
};

json::object answerOf(std::string output, std::string error, ExitCode exitCode) {
  return {{"output", std::move(output)}, {"error", std::move(error)}, {"exitCode", static_cast<int>(exitCode)}};
}

} // namespace

class HostConnection::Conversation : public std::enable_shared_from_this<HostConnection::Conversation> {
public:
  Conversation(const asio::any_io_executor& executor, int socket, const host::Catalogue& catalogue,
               HostService& service)
      : executor_(executor), catalogue_(catalogue), service_(service),
        lines_(executor, socket, ::fcntl(socket, F_DUPFD_CLOEXEC, 0)), stream_(lines_), peer_(stream_),
        tools_(peer_, catalogue, clock_, TABWRIGHT_VERSION) {
    peer_.onRequest(protocol::run, [this](json::object params) { return run(std::move(params)); });
  }

  void serve(std::function<void()> ended) {
    // The caller may be on any thread, and the peer belongs to the executor. The handlers hold the conversation: its
    // connection may be gone while the last of them unwinds.
    asio::post(executor_, [self = shared_from_this(), ended = std::move(ended)]() mutable {
      asio::co_spawn(self->executor_, self->peer_.run(),
                     asio::bind_cancellation_slot(self->cancel_.slot(),
                                                  [self, ended = std::move(ended)](const std::exception_ptr&) {
                                                    self->stream_.close();
                                                    ended();
                                                  }));
    });
  }

  void end() {
    asio::post(executor_, [self = shared_from_this()] { self->cancel_.emit(asio::cancellation_type::all); });
  }

  [[nodiscard]] bool hasSpoken() const { return stream_.hasReceived(); }

private:
  platform::Task<json::value> run(json::object params) {
    const std::vector<std::string> words = wordsIn(params);
    const Terminal terminal = terminalIn(params);
    ActionRun order{.command = {},
                    .directory = textIn(params, "directory"),
                    .isShownOnTerminal = terminal.isOutput,
                    .terminalWidth = terminal.width};
    // Last of what can be refused, as it may close the door of this host.
    if (!service_.serves(textIn(params, "version")))
      throw RpcError(protocol::leavingError, "This host has ended its service.");
    // From here on a client that loses the connection doesn't try again: it can't know what has been done.
    peer_.notify(protocol::started, {});
    ClientProcess client(peer_, terminal.isInput);
    ReportForm form = ReportForm::sentence;
    try {
      order.command = runCommandIn(words);
      // From here failures are told in the form that the words ask for.
      if (wantsJson(order.command))
        form = ReportForm::json;
      co_return answerOf(co_await runAction(catalogue_, std::move(order), client), "", ExitCode::done);
    } catch (const RpcError&) {
      throw; // the connection has ended
    } catch (const platform::Failure& failure) {
      const FailureReport report = commandReportOf(failure, form);
      co_return answerOf("", report.text, report.exitCode);
    } catch (const std::exception& error) {
      co_return answerOf("", std::string("tabwright: ") + error.what() + "\n", ExitCode::failed);
    }
  }

  const asio::any_io_executor executor_;
  const host::Catalogue& catalogue_;
  HostService& service_;
  rpc::LineStream lines_;
  WatchedStream stream_;
  rpc::Peer peer_;
  platform::SystemClock clock_;
  host::ToolServer tools_;
  asio::cancellation_signal cancel_;
};

HostConnection::HostConnection(const asio::any_io_executor& executor, int socket, const host::Catalogue& catalogue,
                               HostService& service)
    : conversation_(std::make_shared<Conversation>(executor, socket, catalogue, service)) {}

HostConnection::~HostConnection() = default;

void HostConnection::serve(std::function<void()> ended) {
  conversation_->serve(std::move(ended));
}

void HostConnection::end() {
  conversation_->end();
}

bool HostConnection::hasSpoken() const {
  return conversation_->hasSpoken();
}

} // namespace tabwright::app
