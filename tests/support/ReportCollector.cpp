// One connection after the other, since a sender has but one.
#include "support/ReportCollector.h"

#include "platform/Mutex.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>

#include <atomic>
#include <list>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>
#include <utility>

namespace tabwright::testsupport {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

class ReportCollector::Listener {
public:
  Listener() : acceptor_(context_, tcp::endpoint(asio::ip::address_v4::loopback(), 0)) {
    thread_ = std::thread([this] { serve(); });
  }
  ~Listener() {
    isEnding_ = true;
    ::shutdown(acceptor_.native_handle(), SHUT_RDWR); // wakes the thread
    thread_.join();
  }

  void behave(Manner manner, std::string head) {
    const platform::MutexLock lock(mutex_);
    manner_ = manner;
    head_ = std::move(head);
  }
  [[nodiscard]] std::vector<std::string> requests() const {
    const platform::MutexLock lock(mutex_);
    return requests_;
  }
  [[nodiscard]] unsigned port() const { return port_; }

private:
  void serve() {
    while (!isEnding_) {
      tcp::socket socket(context_);
      error_code error;
      acceptor_.accept(socket, error);
      if (!error)
        exchange(std::move(socket));
    }
  }

  void exchange(tcp::socket socket) {
    const timeval patience{.tv_sec = 10, .tv_usec = 0};
    for (const int direction : {SO_RCVTIMEO, SO_SNDTIMEO})
      ::setsockopt(socket.native_handle(), SOL_SOCKET, direction, &patience, sizeof patience);
    std::string request;
    error_code error;
    const std::size_t head = asio::read_until(socket, asio::dynamic_buffer(request), "\r\n\r\n", error);
    const std::size_t length = request.find("Content-Length: ");
    if (error || length == std::string::npos)
      return;
    const std::size_t whole = head + std::stoul(request.substr(length + 16));
    if (request.size() < whole)
      asio::read(socket, asio::dynamic_buffer(request), asio::transfer_exactly(whole - request.size()), error);

    Manner manner{};
    std::string response = "HTTP/1.1 ";
    {
      const platform::MutexLock lock(mutex_);
      requests_.push_back(std::move(request));
      manner = manner_;
      response += head_;
    }
    if (manner == Manner::fallsSilent) {
      silent_.push_back(std::move(socket));
      return;
    }
    response += "Connection: close\r\n";
    response += manner == Manner::answers ? "Content-Length: 2\r\n\r\n{}" : "\r\n";
    asio::write(socket, asio::buffer(response), error);
    const std::string more(1 << 16, 'x');
    while (manner == Manner::neverFinishes && !error && !isEnding_)
      asio::write(socket, asio::buffer(more), error);
  }

  asio::io_context context_{1};
  tcp::acceptor acceptor_;
  const unsigned port_ = acceptor_.local_endpoint().port();
  std::atomic<bool> isEnding_ = false;
  std::list<tcp::socket> silent_;
  mutable platform::Mutex mutex_;
  std::vector<std::string> requests_ GUARDED_BY(mutex_);
  Manner manner_ GUARDED_BY(mutex_) = Manner::answers;
  std::string head_ GUARDED_BY(mutex_) = "200 OK\r\n";
  std::thread thread_;
};

ReportCollector::ReportCollector() : listener_(std::make_unique<Listener>()) {}
ReportCollector::~ReportCollector() = default;

void ReportCollector::behave(Manner manner, std::string head) {
  listener_->behave(manner, std::move(head));
}

std::vector<std::string> ReportCollector::requests() const {
  return listener_->requests();
}

std::string ReportCollector::dsn() const {
  return "http://somekey@127.0.0.1:" + std::to_string(listener_->port()) + "/42";
}

} // namespace tabwright::testsupport
