#pragma once

#include "platform/Failure.h"
#include "platform/Mutex.h"

#include <utility>
#include <vector>

namespace tabwright::platform {

/// Collects notices from far below while a run goes on, for the caller that started it. Safe from several threads.
class Notices {
public:
  void add(Notice notice) {
    const MutexLock lock(mutex_);
    noticed_.push_back(std::move(notice));
  }
  /// In the order in which they came.
  [[nodiscard]] std::vector<Notice> all() const {
    const MutexLock lock(mutex_);
    return noticed_;
  }

private:
  mutable Mutex mutex_;
  std::vector<Notice> noticed_ GUARDED_BY(mutex_);
};

} // namespace tabwright::platform
