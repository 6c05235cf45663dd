#include "app/Interruptible.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>
#include <utility>

// One io_context runs on the calling thread: it waits for the signals and for the work, whichever is first, and always
// for the work in the end. A signal only asks the work to stop, so nothing that it has begun is left half done. Work
// that ends well in spite of the signal counts as done.

namespace tabwright::app {

namespace asio = boost::asio;

namespace {

/// The signals that end a command. A terminal that goes away is one, unless the user has asked to outlive it
/// (nohup(1)).
void listenFor(asio::signal_set& signals) {
  signals.add(SIGINT);
  signals.add(SIGTERM);
  struct sigaction former{};
  if (::sigaction(SIGHUP, nullptr, &former) == 0 && former.sa_handler != SIG_IGN)
    signals.add(SIGHUP);
}

/// Has a line shown when it is due, as long as it lives.
class WaitingWatch {
public:
  WaitingWatch(asio::io_context& context, client::WaitingLine* line) : timer_(context), line_(line) { wait(); }
  /// On the context's thread.
  void end() {
    timer_.cancel();
    if (line_)
      line_->hold();
    line_ = nullptr;
  }

private:
  void wait() {
    if (!line_)
      return;
    constexpr std::chrono::milliseconds least{50};
    // A line that stands is looked at again as well: others take it away, and it may be due once more.
    timer_.expires_after(line_->isShown() ? std::chrono::milliseconds(500) : std::max(least, line_->left()));
    timer_.async_wait([this](const boost::system::error_code& error) {
      if (error || !line_)
        return;
      line_->showIfDue();
      wait();
    });
  }

  asio::steady_timer timer_;
  client::WaitingLine* line_;
};

} // namespace

void runInterruptibly(platform::Task<void> task, client::WaitingLine* waiting) {
  asio::io_context context(1);
  asio::signal_set signals(context);
  listenFor(signals);
  asio::cancellation_signal cancel;
  bool wasInterrupted = false;
  std::exception_ptr failure;
  WaitingWatch watch(context, waiting);

  signals.async_wait([&](const boost::system::error_code& error, int) {
    if (error)
      return;
    wasInterrupted = true;
    cancel.emit(asio::cancellation_type::all);
  });
  asio::co_spawn(context, std::move(task), asio::bind_cancellation_slot(cancel.slot(), [&](std::exception_ptr thrown) {
                   failure = std::move(thrown);
                   signals.cancel();
                   watch.end();
                 }));
  context.run();
  if (wasInterrupted && failure)
    throw Interrupted();
  if (failure)
    std::rethrow_exception(failure);
}

void runInterruptibly(const std::function<void(std::stop_token)>& work, client::WaitingLine* waiting) {
  asio::io_context context(1);
  asio::signal_set signals(context);
  listenFor(signals);
  std::stop_source stop;
  std::exception_ptr failure;
  WaitingWatch watch(context, waiting);

  signals.async_wait([&](const boost::system::error_code& error, int) {
    if (!error)
      stop.request_stop();
  });
  // The work blocks, and this thread has the signals to wait for.
  std::jthread thread([&] {
    try {
      work(stop.get_token());
    } catch (...) {
      failure = std::current_exception();
    }
    asio::post(context, [&] {
      signals.cancel();
      watch.end();
    });
  });
  context.run(); // until the work has ended, be it by a signal
  thread.join();
  if (stop.stop_requested() && failure)
    throw Interrupted();
  if (failure)
    std::rethrow_exception(failure);
}

} // namespace tabwright::app
