#pragma once

#include <mutex>

// Attributes of clang's thread-safety analysis (-Wthread-safety); nothing to other compilers.
#if defined(__clang__)
#define THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define THREAD_ANNOTATION(attribute)
#endif

/// The member is read and written only while the mutex is held.
#define GUARDED_BY(mutex) THREAD_ANNOTATION(guarded_by(mutex))
/// The function or lambda is called only while these mutexes are held.
#define REQUIRES(...) THREAD_ANNOTATION(requires_capability(__VA_ARGS__))

namespace tabwright::platform {

/// A standard mutex that the compiler knows: a build by clang fails where a member that is GUARDED_BY one is used
/// without it, or a function that REQUIRES one is called without it.
///
///     Mutex mutex_;
///     std::deque<Job> queue_ GUARDED_BY(mutex_);
///
/// Lambdas are checked by themselves, so the predicate of a wait says which mutex it runs under:
///
///     MutexLock lock(mutex_);
///     condition.wait(lock, [this]() REQUIRES(mutex_) { return !queue_.empty(); });
template <class Standard>
class THREAD_ANNOTATION(capability("mutex")) BasicMutex {
public:
  /// Mostly called by a `MutexLock`, which also unlocks when an exception passes.
  void lock() THREAD_ANNOTATION(acquire_capability()) { standard_.lock(); }
  void unlock() THREAD_ANNOTATION(release_capability()) { standard_.unlock(); }

private:
  Standard standard_;
};

/// The mutex for nearly everything; a thread must not lock it twice.
using Mutex = BasicMutex<std::mutex>;
/// May be locked again by the thread that holds it, on roads that the analysis does not follow: through a callback.
using RecursiveMutex = BasicMutex<std::recursive_mutex>;

/// Holds a mutex for as long as it lives, but for the time between `unlock` and `lock`. A
/// std::condition_variable_any waits with it.
template <class Lockable>
/// For one thread; not copied and not moved.
///
///     MutexLock lock(mutex_);
///     lock.unlock();
///     job();    // others may have the mutex meanwhile
///     lock.lock();
class THREAD_ANNOTATION(scoped_lockable) MutexLock {
public:
  /// Blocks until the mutex is free. The mutex outlives the lock.
  explicit MutexLock(Lockable& mutex) THREAD_ANNOTATION(acquire_capability(mutex)) : mutex_(mutex) { lock(); }
  ~MutexLock() THREAD_ANNOTATION(release_capability()) {
    if (isHeld_)
      mutex_.unlock();
  }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

  void lock() THREAD_ANNOTATION(acquire_capability()) {
    mutex_.lock();
    isHeld_ = true;
  }
  void unlock() THREAD_ANNOTATION(release_capability()) {
    mutex_.unlock();
    isHeld_ = false;
  }

private:
  Lockable& mutex_;
  /// False between `unlock` and `lock`, so that the destructor doesn't unlock what others hold by then.
  bool isHeld_ = false;
};

} // namespace tabwright::platform
