#include "platform/linux/SystemClock.h"
#include "support/RunTask.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/post.hpp>
#include <boost/system/system_error.hpp>
#include <gtest/gtest.h>

#include <ctime>

namespace tabwright::platform {
namespace {

TEST(SystemClock, CountsFromTheReferenceDate) {
  // An hour's room: the epoch is tried here, and the two clocks tick apart under load.
  constexpr double unixTimeOfReferenceDate = 978307200;
  EXPECT_NEAR(SystemClock().secondsSinceReferenceDate(),
              static_cast<double>(std::time(nullptr)) - unixTimeOfReferenceDate, 3600);
}

TEST(SystemClock, ASleepEndsAndCanBeCancelled) {
  SystemClock clock;
  testsupport::runTask(clock.sleep(std::chrono::nanoseconds(-1)));
  testsupport::runTask(clock.sleep(std::chrono::microseconds(1)));

  boost::asio::io_context context;
  boost::asio::cancellation_signal cancellation;
  std::exception_ptr outcome;
  boost::asio::co_spawn(
      context, clock.sleep(std::chrono::hours(24 * 365)),
      boost::asio::bind_cancellation_slot(cancellation.slot(), [&](std::exception_ptr thrown) { outcome = thrown; }));
  boost::asio::post(context, [&] { cancellation.emit(boost::asio::cancellation_type::all); });
  context.run();
  EXPECT_THROW(std::rethrow_exception(outcome), boost::system::system_error);
}

} // namespace
} // namespace tabwright::platform
