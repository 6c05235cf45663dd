#pragma once

#include "platform/Clock.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/system/system_error.hpp>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace tabwright::testsupport {

/// A clock whose sleepers sleep until a test has moved it far enough. Time starts at zero, the wall time at a date of
/// 2026. Safe to use from any thread, as long as the sleepers' executors run in one thread or `advance` is called where
/// no sleeper runs.
class SteppedClock final : public platform::Clock {
public:
  /// Moves time on. Sleepers whose time has come go on when their executor next runs.
  void advance(std::chrono::nanoseconds step) {
    const std::scoped_lock lock(mutex_);
    now_ += step;
    for (const auto& entry : sleepers_) {
      if (const auto sleeper = entry.lock(); sleeper && sleeper->end <= now_)
        sleeper->timer.cancel();
    }
  }
  /// The number of those who sleep now.
  [[nodiscard]] std::size_t sleepers() const {
    const std::scoped_lock lock(mutex_);
    return static_cast<std::size_t>(
        std::ranges::count_if(sleepers_, [](const auto& entry) { return !entry.expired(); }));
  }

  [[nodiscard]] double secondsSinceReferenceDate() const override {
    const std::scoped_lock lock(mutex_);
    return 788918400 + std::chrono::duration<double>(now_).count();
  }

  platform::Task<void> sleep(std::chrono::nanoseconds duration) override {
    // Named: g++ 12 destroys what an await within an initializer gave twice.
    const auto executor = co_await boost::asio::this_coro::executor;
    const auto sleeper = std::make_shared<Sleeper>(
        Sleeper{boost::asio::steady_timer(executor, boost::asio::steady_timer::time_point::max()), {}});
    {
      const std::scoped_lock lock(mutex_);
      sleeper->end = now_ + duration;
      sleepers_.push_back(sleeper);
    }
    co_await sleeper->timer.async_wait(boost::asio::as_tuple(boost::asio::use_awaitable));
    const std::scoped_lock lock(mutex_);
    std::erase_if(sleepers_, [&](const auto& entry) { return entry.expired() || entry.lock() == sleeper; });
    if (now_ < sleeper->end)
      throw boost::system::system_error(boost::asio::error::operation_aborted);
  }

private:
  struct Sleeper {
    boost::asio::steady_timer timer;
    std::chrono::nanoseconds end;
  };

  mutable std::mutex mutex_;
  std::chrono::nanoseconds now_{};
  std::vector<std::weak_ptr<Sleeper>> sleepers_; // those that end with their executor just vanish
};

} // namespace tabwright::testsupport
