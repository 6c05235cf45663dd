#pragma once

#include "platform/Mutex.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <pthread.h>
#include <stop_token>
#include <vector>

namespace tabwright::platform {

/// Threads for work that blocks: scripts, which wait in `delay` and in calls of a browser, and reads of other programs.
/// Each running piece has a thread to itself, so one that waits keeps no other from running. Threads are made when
/// needed, and a few are kept; their stacks are large, for scripts recurse, but cost only what a recursion has reached,
/// and go with their thread. The bound is for the machine's sake, far above what is in use together; work beyond it, or
/// for which the system gives no thread, waits in a queue.
///
/// Safe from several threads. The destructor stops all work, and returns when the threads have ended. Coroutines come
/// here by `onThread` (platform/OnThread.h).
///
///     const auto job = threads.prepare([](std::stop_token stop) { readMenus(stop); });
///     threads.start(job);
///     threads.cancel(job);
class WorkerThreads {
public:
  /// Called once, on a thread of this. When the stop was requested before it began, it has to finish at once; then it
  /// may be called by `cancel`, on the caller's thread. Must not throw.
  using Work = std::function<void(std::stop_token)>;
  /// One piece of work and the request to stop it.
  class Job;

  /// No thread is made yet. At least one is allowed, whatever the number.
  explicit WorkerThreads(std::size_t mostThreads = 512);
  ~WorkerThreads();
  WorkerThreads(const WorkerThreads&) = delete;
  WorkerThreads& operator=(const WorkerThreads&) = delete;

  /// Nothing runs before `start`; so whoever wants to cancel can keep the job first.
  [[nodiscard]] std::shared_ptr<Job> prepare(Work work);
  /// Throws std::system_error when not even one thread can be made; the work has not been called then.
  void start(const std::shared_ptr<Job>& job);
  /// Requests a running job to stop; a waiting one leaves the queue and finishes here. Nothing happens to one that has
  /// finished.
  void cancel(const std::shared_ptr<Job>& job);

private:
  /// The start of each thread, in the form that pthread_create takes.
  static void* threadMain(void* threads);
  /// Works off the queue until there are enough idle threads, or all is closing.
  void serve();
  /// Makes a thread. When the system gives none, the others take the work; throws when there are no others.
  void addThread() REQUIRES(mutex_);
  /// Waits for threads that have nothing left to do but return, so that their stacks are freed.
  void joinEnded() REQUIRES(mutex_);

  /// Idle threads count too.
  const std::size_t mostThreads_;
  Mutex mutex_;
  std::condition_variable_any wake_;
  /// A job is in one of these two, or in neither when it has finished.
  std::deque<std::shared_ptr<Job>> queue_ GUARDED_BY(mutex_);
  std::vector<std::shared_ptr<Job>> running_ GUARDED_BY(mutex_);
  std::vector<pthread_t> threads_ GUARDED_BY(mutex_); ///< that serve
  std::vector<pthread_t> ended_ GUARDED_BY(mutex_);   ///< that have left, or are about to return
  /// Threads that wait for work, those that were woken and haven't the lock yet included.
  std::size_t idle_ GUARDED_BY(mutex_) = 0;
  bool isClosing_ GUARDED_BY(mutex_) = false;
};

} // namespace tabwright::platform
