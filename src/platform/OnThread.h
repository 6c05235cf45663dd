#pragma once

#include "platform/Task.h"
#include "platform/WorkerThreads.h"

#include <boost/asio/associated_cancellation_slot.hpp>
#include <boost/asio/associated_executor.hpp>
#include <boost/asio/async_result.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace tabwright::platform {

/// Runs blocking work on a thread of its own, and resumes the coroutine on its own executor with the work's value or
/// failure:
///
///     const MenuItemResult item = co_await onThread<MenuItemResult>(threads, [=](std::stop_token stop) { … });
///
/// A cancellation of the coroutine only requests the stop; the awaiting ends when the work has. So what the work
/// refers to has to live as long as the coroutine, and no longer. Throws `std::system_error` where not even one thread
/// can be made.
template <class Value>
Task<Value> onThread(std::shared_ptr<WorkerThreads> threads, std::function<Value(std::stop_token)> work) {
  // One Asio operation: its initiation hands the work to a thread, which posts the completion to the executor of the
  // awaiting coroutine. The executor and the cancellation slot belong to the handler, so they are taken out before it
  // is moved. It runs at once, on the thread of the coroutine that awaits.
  auto begin = [threads, work = std::move(work)](auto handler) mutable {
    using Handler = decltype(handler);
    const auto executor = boost::asio::get_associated_executor(handler);
    auto slot = boost::asio::get_associated_cancellation_slot(handler);
    auto completion = std::make_shared<Handler>(std::move(handler));
    // The work guard keeps the executor from running out of work, and from returning, while the thread is busy. The
    // coroutine is resumed on its own executor and never on the thread, also after a failure.
    auto complete = [completion, slot, guard = boost::asio::make_work_guard(executor)](
                        const std::exception_ptr& failure, std::optional<Value> value) mutable {
      boost::asio::post(guard.get_executor(),
                        [completion = std::move(completion), slot, failure, value = std::move(value)]() mutable {
                          slot.clear();
                          std::move (*completion)(failure, std::move(value));
                        });
      guard.reset();
    };
    // No exception may leave a thread: it crosses to the coroutine as a value.
    const auto job = threads->prepare([work = std::move(work), complete](std::stop_token stop) mutable {
      std::exception_ptr failure;
      std::optional<Value> value;
      try {
        value.emplace(work(std::move(stop)));
      } catch (...) {
        failure = std::current_exception();
      }
      complete(failure, std::move(value));
    });
    // Connected before the job starts, so that no cancellation falls in between.
    if (slot.is_connected()) {
      // Weak: the slot lives in the coroutine that the job's completion keeps.
      slot.assign([threads = std::weak_ptr(threads), job = std::weak_ptr(job)](boost::asio::cancellation_type) {
        const auto owner = threads.lock();
        const auto running = job.lock();
        if (owner && running)
          owner->cancel(running);
      });
    }
    try {
      // It has not been called then where this throws, so the completion is still to be made.
      threads->start(job);
    } catch (...) {
      complete(std::current_exception(), {});
    }
  };
  std::optional<Value> value = co_await boost::asio::async_initiate<const boost::asio::use_awaitable_t<>&,
                                                                    void(std::exception_ptr, std::optional<Value>)>(
      std::move(begin), boost::asio::use_awaitable);
  // A failure has been thrown by the await, so there is a value.
  co_return std::move(*value);
}

} // namespace tabwright::platform
