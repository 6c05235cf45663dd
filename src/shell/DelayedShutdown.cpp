// A job sleeps on a strand of the background executor. Whether it may still quit is decided under the lock that guards
// which job is pending: so a job that was exchanged for another never fires, even if its sleep had just ended. The
// cancellation that then goes to its sleep only frees what the sleep holds. A job holds the surroundings weakly, since
// it may end when the timer has gone.
#include "shell/DelayedShutdown.h"

#include "platform/Logger.h"
#include "platform/Mutex.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/strand.hpp>

#include <exception>
#include <functional>
#include <utility>

namespace tabwright::shell {

namespace {

const platform::Logger shutdownLog("DelayedShutdown");

} // namespace

class DelayedShutdown::Job : public std::enable_shared_from_this<Job> {
public:
  explicit Job(const boost::asio::any_io_executor& background) : strand_(boost::asio::make_strand(background)) {}

  // Calls `done` on the strand at the end of the sleep, but not when that was cancelled.
  void start(platform::Clock& clock, std::function<void()> done) {
    // Through the strand, as a signal isn't safe to use from two threads.
    boost::asio::post(strand_, [self = shared_from_this(), &clock, done = std::move(done)] {
      if (self->isCancelled_)
        return;
      boost::asio::co_spawn(self->strand_, clock.sleep(delay),
                            boost::asio::bind_cancellation_slot(self->cancellation_.slot(),
                                                                [self, done](const std::exception_ptr& interruption) {
                                                                  if (!interruption)
                                                                    done();
                                                                }));
    });
  }

  void cancel() {
    boost::asio::post(strand_, [self = shared_from_this()] {
      self->isCancelled_ = true;
      self->cancellation_.emit(boost::asio::cancellation_type::terminal);
    });
  }

private:
  boost::asio::strand<boost::asio::any_io_executor> strand_;
  boost::asio::cancellation_signal cancellation_; // used on the strand only, like the flag
  bool isCancelled_ = false;
};

struct DelayedShutdown::Pending {
  explicit Pending(Surroundings surroundings) : surroundings(std::move(surroundings)) {}

  const Surroundings surroundings;
  platform::Mutex mutex;
  std::shared_ptr<Job> pendingJob GUARDED_BY(mutex);
};

DelayedShutdown::DelayedShutdown(Surroundings surroundings)
    : pending_(std::make_shared<Pending>(std::move(surroundings))) {}

DelayedShutdown::~DelayedShutdown() {
  const platform::MutexLock lock(pending_->mutex);
  if (pending_->pendingJob)
    pending_->pendingJob->cancel();
  pending_->pendingJob = nullptr;
}

void DelayedShutdown::scheduleShutdown() {
  const Surroundings& surroundings = pending_->surroundings;
  if (!surroundings.appState.isAppRunningHidden) {
    shutdownLog.debug("Not started by service/action, no shutdown scheduling");
    return;
  }
  const auto job = std::make_shared<Job>(surroundings.background);
  {
    const platform::MutexLock lock(pending_->mutex);
    if (pending_->pendingJob)
      pending_->pendingJob->cancel();
    pending_->pendingJob = job;
    // Under the lock, so that the job is the pending one before its sleep can end; the job itself is held weakly, as it
    // holds this function.
    job->start(surroundings.clock, [weak = std::weak_ptr(pending_), weakJob = std::weak_ptr(job)] {
      if (const auto finished = weakJob.lock())
        fire(weak, finished);
    });
  }
  shutdownLog.debug("(Re-)scheduled automatic app shutdown");
}

void DelayedShutdown::fire(const std::weak_ptr<Pending>& weakPending, const std::shared_ptr<Job>& job) {
  const std::shared_ptr<Pending> pending = weakPending.lock();
  if (!pending)
    return;
  {
    const platform::MutexLock lock(pending->mutex);
    if (pending->pendingJob != job)
      return;
  }
  // Posted with the lock released: the application may schedule or end this in the course of quitting.
  boost::asio::post(pending->surroundings.mainActor, [pending] { pending->surroundings.application.terminate(); });
}

} // namespace tabwright::shell
