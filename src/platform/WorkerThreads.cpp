// pthreads, since a standard thread has no way to ask for a larger stack. A thread that is no longer needed joins the
// one that left before it, and is joined itself by the next to come. A job is in the queue, among the running ones, or
// with the one that cancels it; the lock decides which, so it is worked off once. The lock is never held while a job
// works.
#include "platform/WorkerThreads.h"

#include "platform/linux/SignalStack.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace tabwright::platform {

namespace {

/// Address space, not memory: pages are taken as a script's recursion reaches them.
constexpr std::size_t stackBytes = std::size_t{64} << 20;
constexpr std::size_t mostIdleThreads = 8;

} // namespace

class WorkerThreads::Job {
public:
  explicit Job(Work work) : work(std::move(work)) {}
  Work work;
  std::stop_source stop;
};

WorkerThreads::WorkerThreads(std::size_t mostThreads) : mostThreads_(std::max<std::size_t>(mostThreads, 1)) {}

WorkerThreads::~WorkerThreads() {
  {
    const MutexLock lock(mutex_);
    isClosing_ = true;
    for (const auto& job : queue_)
      job->stop.request_stop();
    for (const auto& job : running_)
      job->stop.request_stop();
  }
  wake_.notify_all();
  // None leaves by itself any more.
  for (const pthread_t thread : threads_)
    pthread_join(thread, nullptr);
  joinEnded();
}

std::shared_ptr<WorkerThreads::Job> WorkerThreads::prepare(Work work) {
  return std::make_shared<Job>(std::move(work));
}

void WorkerThreads::start(const std::shared_ptr<Job>& job) {
  const MutexLock lock(mutex_);
  joinEnded();
  // A thread that was woken counts as idle until it has the lock, so those for which the queue holds work already don't
  // count.
  if (idle_ <= queue_.size() && threads_.size() < mostThreads_)
    addThread();
  queue_.push_back(job);
  wake_.notify_one();
}

void WorkerThreads::cancel(const std::shared_ptr<Job>& job) {
  job->stop.request_stop();
  {
    const MutexLock lock(mutex_);
    const auto waiting = std::ranges::find(queue_, job);
    if (waiting == queue_.end())
      return;
    // No thread takes it any more: it ends below, with its stop requested, so that whoever awaits it hears of it.
    queue_.erase(waiting);
  }
  job->work(job->stop.get_token());
}

void WorkerThreads::joinEnded() {
  for (const pthread_t thread : ended_)
    pthread_join(thread, nullptr);
  ended_.clear();
}

void WorkerThreads::addThread() {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, stackBytes);
  pthread_t thread{};
  const int error = pthread_create(&thread, &attributes, threadMain, this);
  pthread_attr_destroy(&attributes);
  if (error == 0)
    threads_.push_back(thread);
  // Others take the work when they are done; without any it would wait for ever.
  else if (threads_.empty())
    throw std::system_error(error, std::generic_category(), "pthread_create: no thread to work on");
}

void* WorkerThreads::threadMain(void* threads) {
  ensureSignalStack(); // scripts may run as deep as the stack goes
  static_cast<WorkerThreads*>(threads)->serve();
  return nullptr;
}

void WorkerThreads::serve() {
  MutexLock lock(mutex_);
  for (;;) {
    if (queue_.empty() && idle_ >= mostIdleThreads && !isClosing_) {
      joinEnded(); // so that at most one keeps its stack
      std::erase(threads_, pthread_self());
      ended_.push_back(pthread_self());
      return;
    }
    ++idle_;
    wake_.wait(lock, [this]() REQUIRES(mutex_) { return isClosing_ || !queue_.empty(); });
    --idle_;
    // Closing; what was in the queue has been worked off first.
    if (queue_.empty())
      return;
    const std::shared_ptr<Job> job = std::move(queue_.front());
    queue_.pop_front();
    running_.push_back(job);
    lock.unlock();
    job->work(job->stop.get_token());
    job->work = nullptr; // what it holds must not outlive the work
    lock.lock();
    std::erase(running_, job);
  }
}

} // namespace tabwright::platform
