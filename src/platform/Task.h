#pragma once

#include <boost/asio/awaitable.hpp>

namespace tabwright::platform {

/// A coroutine that yields a `T` or throws. Lazy: it starts when it is awaited or spawned. It runs on the executor of
/// its awaiter and holds no thread while it is suspended. Cancellation arrives by Asio's cancellation slots.
template <class T>
///     Task<int> twice(Task<int> number) { co_return 2 * co_await std::move(number); }
using Task = boost::asio::awaitable<T>;

} // namespace tabwright::platform
