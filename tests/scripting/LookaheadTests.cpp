#include "scripting/driver/Lookahead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>
#include <stdexcept>

namespace tabwright::scripting {
namespace {

using namespace std::chrono_literals;

TEST(Lookahead, LooksAfterEachChangeWhileInUseWhateverALookThrows) {
  std::counting_semaphore<> looks(0);
  Lookahead lookahead(
      [&](const std::stop_token&) {
        looks.release();
        throw std::runtime_error("no browser");
      },
      1h);
  lookahead.used();
  for (int round = 0; round < 3; ++round) {
    lookahead.stale();
    ASSERT_TRUE(looks.try_acquire_for(20s));
  }
  EXPECT_FALSE(looks.try_acquire_for(20ms)) << "nothing has changed since";
}

TEST(Lookahead, DoesNotLookForNobody) {
  std::atomic<int> looks = 0;
  const auto count = [&](const std::stop_token&) { ++looks; };
  Lookahead neverUsed(count);
  neverUsed.stale();
  Lookahead usedLongAgo(count, 0s);
  usedLongAgo.used();
  usedLongAgo.stale();
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(looks, 0);
}

TEST(Lookahead, EndsInTheMiddleOfALookAndItsBellRingsOnForNobody) {
  std::binary_semaphore looking(0);
  std::function<void()> bell;
  {
    Lookahead lookahead(
        [&](const std::stop_token& stop) {
          std::binary_semaphore stopped(0);
          const std::stop_callback wake(stop, [&] { stopped.release(); });
          looking.release();
          stopped.acquire();
        },
        1h);
    bell = lookahead.staleSignal();
    lookahead.used();
    bell();
    ASSERT_TRUE(looking.try_acquire_for(20s));
  }
  bell();
}

} // namespace
} // namespace tabwright::scripting
