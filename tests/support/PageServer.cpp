#include "support/PageServer.h"

#include "platform/Mutex.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>
#include <fmt/core.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <thread>

namespace tabwright::support {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

class PageServer::Listener {
public:
  Listener() : acceptor_(context_, tcp::endpoint(asio::ip::address_v4::loopback(), 0)) {
    accept();
    thread_ = std::thread([this] { context_.run(); });
  }
  ~Listener() {
    context_.stop();
    thread_.join();
  }

  void set(const std::string& path, std::optional<std::string> response, std::string repeated = {}) {
    const platform::MutexLock lock(mutex_);
    responses_[path] = std::move(response);
    repeated_[path] = std::move(repeated);
  }

  [[nodiscard]] unsigned port() const { return acceptor_.local_endpoint().port(); }

private:
  struct Exchange {
    explicit Exchange(tcp::socket accepted) : socket(std::move(accepted)) {}
    tcp::socket socket;
    std::string request;
    std::string response;
    std::string repeated;
  };

  void accept() {
    acceptor_.async_accept([this](error_code error, tcp::socket socket) {
      if (error)
        return;
      read(std::make_shared<Exchange>(std::move(socket)));
      accept();
    });
  }

  void read(const std::shared_ptr<Exchange>& exchange) {
    asio::async_read_until(exchange->socket, asio::dynamic_buffer(exchange->request, 65536), "\r\n\r\n",
                           [this, exchange](error_code error, std::size_t) {
                             if (!error)
                               answer(exchange);
                           });
  }

  void answer(const std::shared_ptr<Exchange>& exchange) {
    const std::size_t start = exchange->request.find(' ') + 1;
    const std::string path = exchange->request.substr(start, exchange->request.find_first_of(" ?", start) - start);
    {
      const platform::MutexLock lock(mutex_);
      const auto found = responses_.find(path);
      if (found == responses_.end()) {
        exchange->response = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
      } else if (found->second) {
        exchange->response = *found->second;
        exchange->repeated = repeated_[path];
      } else {
        waiting_.insert(exchange);
        return;
      }
    }
    write(exchange, exchange->response);
  }

  void write(const std::shared_ptr<Exchange>& exchange, const std::string& text) {
    asio::async_write(exchange->socket, asio::buffer(text), [this, exchange](error_code error, std::size_t) {
      if (!error && !exchange->repeated.empty())
        write(exchange, exchange->repeated);
    });
  }

  asio::io_context context_{1};
  tcp::acceptor acceptor_;
  std::thread thread_;
  platform::Mutex mutex_;
  std::map<std::string, std::optional<std::string>> responses_ GUARDED_BY(mutex_);
  std::map<std::string, std::string> repeated_ GUARDED_BY(mutex_);
  std::set<std::shared_ptr<Exchange>> waiting_ GUARDED_BY(mutex_);
};

PageServer::PageServer() : listener_(std::make_unique<Listener>()) {}
PageServer::~PageServer() = default;

void PageServer::serve(const std::string& path, std::string body, std::string contentType) {
  listener_->set(path, fmt::format("HTTP/1.1 200 OK\r\nContent-Type: {}\r\nContent-Length: {}\r\n"
                                   "Cache-Control: no-store\r\nConnection: close\r\n\r\n{}",
                                   contentType, body.size(), body));
}

void PageServer::serveRaw(const std::string& path, std::string response) {
  listener_->set(path, std::move(response));
}

void PageServer::serveEndlessly(const std::string& path, std::string head, std::string text) {
  listener_->set(path, std::move(head), std::move(text));
}

void PageServer::neverAnswer(const std::string& path) {
  listener_->set(path, std::nullopt);
}

std::string PageServer::url(const std::string& path) const {
  return fmt::format("http://127.0.0.1:{}{}", listener_->port(), path);
}

} // namespace tabwright::support
