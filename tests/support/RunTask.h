#pragma once

#include "platform/Task.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>

#include <exception>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace tabwright::testsupport {

/// Runs a task to its end on this thread and gives what it yields, or throws what it throws. A task that waits for
/// something which never comes is a failure, not a hang.
template <class T>
T runTask(platform::Task<T> task) {
  boost::asio::io_context context;
  std::exception_ptr failure;
  const auto finish = [&failure](const std::exception_ptr& thrown, bool isDone) {
    failure = thrown;
    if (!failure && !isDone)
      failure = std::make_exception_ptr(std::logic_error("the task yielded nothing"));
  };
  failure = std::make_exception_ptr(std::logic_error("the task waits for something that never comes"));
  if constexpr (std::is_void_v<T>) {
    boost::asio::co_spawn(context, std::move(task), [&](const std::exception_ptr& thrown) { finish(thrown, true); });
    context.run();
    if (failure)
      std::rethrow_exception(failure);
  } else {
    std::optional<T> value;
    boost::asio::co_spawn(context, std::move(task), [&](const std::exception_ptr& thrown, T result) {
      if (!thrown)
        value.emplace(std::move(result));
      finish(thrown, value.has_value());
    });
    context.run();
    if (failure)
      std::rethrow_exception(failure);
    return std::move(*value);
  }
}

} // namespace tabwright::testsupport
