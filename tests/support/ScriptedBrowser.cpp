#include "support/ScriptedBrowser.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include <atomic>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace tabwright::support {

namespace asio = boost::asio;
namespace beast = boost::beast;
using asio::ip::tcp;

void ScriptedBrowser::Wire::answer(const boost::json::object& call, boost::json::object result) {
  sendText(boost::json::serialize(boost::json::object{{"id", call.at("id")}, {"result", std::move(result)}}));
}

void ScriptedBrowser::Wire::refuse(const boost::json::object& call, int code, const std::string& message) {
  sendText(boost::json::serialize(
      boost::json::object{{"id", call.at("id")}, {"error", {{"code", code}, {"message", message}}}}));
}

void ScriptedBrowser::Wire::report(const std::string& method, boost::json::object parameters,
                                   const std::string& session) {
  boost::json::object event{{"method", method}, {"params", std::move(parameters)}};
  if (!session.empty())
    event["sessionId"] = session;
  sendText(boost::json::serialize(event));
}

class ScriptedBrowser::Server final : public Wire {
public:
  explicit Server(Script script)
      : script_(std::move(script)), acceptor_(context_, tcp::endpoint(asio::ip::address_v4::loopback(), 0)),
        socket_(context_), thread_([this] { serve(); }) {}

  ~Server() override {
    // Wakes the thread from whatever it blocks in.
    ::shutdown(acceptor_.native_handle(), SHUT_RDWR);
    ::shutdown(accepted_, SHUT_RDWR);
    thread_.join();
    if (accepted_ >= 0)
      ::close(accepted_);
  }

  [[nodiscard]] std::uint16_t port() const { return acceptor_.local_endpoint().port(); }

  void sendText(const std::string& text) override {
    socket_.text(true);
    socket_.write(asio::buffer(text));
  }
  void sendBytes(const std::string& bytes) override { asio::write(socket_.next_layer(), asio::buffer(bytes)); }
  void cut() override { ::shutdown(accepted_, SHUT_RDWR); }

private:
  void serve() {
    try {
      acceptor_.accept(socket_.next_layer());
      accepted_ = ::dup(socket_.next_layer().native_handle());
      socket_.accept();
      for (;;) {
        beast::flat_buffer buffer;
        socket_.read(buffer);
        script_(*this, boost::json::parse(beast::buffers_to_string(buffer.data())).as_object());
      }
    } catch (const std::exception&) { // the connection has ended
    }
    cut();
  }

  Script script_;
  asio::io_context context_{1};
  tcp::acceptor acceptor_;
  beast::websocket::stream<tcp::socket, false> socket_;
  std::atomic<int> accepted_ = -1; ///< the socket once more, for the end: the thread may close its own at any time
  std::thread thread_;
};

ScriptedBrowser::ScriptedBrowser(Script script) : server_(std::make_unique<Server>(std::move(script))) {}
ScriptedBrowser::~ScriptedBrowser() = default;

devtools::Endpoint ScriptedBrowser::endpoint() const {
  return {server_->port(), "/devtools/browser/a89c6591-82a3-4ae8-a189-5cba8bdcc2e9"};
}

} // namespace tabwright::support
