// Asio's timer does the waiting.
#include "platform/linux/SystemClock.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>

namespace tabwright::platform {

double SystemClock::secondsSinceReferenceDate() const {
  using namespace std::chrono;
  constexpr sys_days referenceDate = 2001y / January / 1;
  return duration<double>(system_clock::now() - referenceDate).count();
}

Task<void> SystemClock::sleep(std::chrono::nanoseconds duration) {
  if (duration <= std::chrono::nanoseconds::zero())
    co_return;
  const auto executor = co_await boost::asio::this_coro::executor;
  boost::asio::steady_timer timer(executor, duration);
  co_await timer.async_wait(boost::asio::use_awaitable);
}

} // namespace tabwright::platform
