#pragma once

#include <boost/asio/execution.hpp>
#include <boost/asio/execution_context.hpp>

#include <functional>
#include <memory>
#include <utility>

namespace tabwright::views {

/// Has `work` called by Qt's event loop; does nothing where there is no application any more. From any thread.
void queueOnMainThread(std::function<void()> work);

/// The main actor of a program with windows: runs functions on Qt's main thread, in order, never at once. Functions
/// that come when the event loop has ended are not run.
class QtExecutor {
public:
  /// `context` outlives all users; it serves Asio's services and runs nothing.
  explicit QtExecutor(boost::asio::execution_context& context) : context_(&context) {}

  [[nodiscard]] boost::asio::execution_context& query(boost::asio::execution::context_t) const noexcept {
    return *context_;
  }
  static constexpr boost::asio::execution::blocking_t query(boost::asio::execution::blocking_t) noexcept {
    return boost::asio::execution::blocking.never;
  }
  [[nodiscard]] QtExecutor require(boost::asio::execution::blocking_t::never_t) const noexcept { return *this; }

  template <class Function>
  void execute(Function function) const {
    // Qt copies what it queues; Asio's functions can only be moved.
    auto kept = std::make_shared<Function>(std::move(function));
    queueOnMainThread([kept] { std::move (*kept)(); });
  }

  friend bool operator==(const QtExecutor&, const QtExecutor&) noexcept = default;

private:
  boost::asio::execution_context* context_;
};

} // namespace tabwright::views
