#include "host/mcp/CallProgress.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/deferred.hpp>
#include <boost/asio/experimental/parallel_group.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/json/object.hpp>
#include <fmt/core.h>

#include <chrono>
#include <exception>
#include <utility>

namespace tabwright::host {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::seconds interval{1};

platform::Task<void> report(rpc::Peer& peer, platform::Clock& clock, boost::json::value token, std::string tool) {
  for (int seconds = 1;; ++seconds) {
    co_await clock.sleep(interval);
    boost::json::object progress{{"progressToken", token},
                                 {"progress", seconds},
                                 {"message", fmt::format("{} has been running for {} s", tool, seconds)}};
    peer.notify("notifications/progress", std::move(progress));
  }
}

} // namespace

platform::Task<ActionResult> withProgress(platform::Task<ActionResult> run, rpc::Peer& peer, platform::Clock& clock,
                                          boost::json::value token, std::string tool) {
  // Both run on the caller's executor, so the peer is only touched there.
  const auto executor = co_await asio::this_coro::executor;
  // The reports never end by themselves, so the first to end is the run.
  auto [order, failure, result, stopped] =
      co_await asio::experimental::make_parallel_group(
          asio::co_spawn(executor, std::move(run), asio::deferred),
          asio::co_spawn(executor, report(peer, clock, std::move(token), std::move(tool)), asio::deferred))
          .async_wait(asio::experimental::wait_for_one(), asio::use_awaitable);
  if (failure)
    std::rethrow_exception(failure);
  co_return std::move(result);
}

} // namespace tabwright::host
