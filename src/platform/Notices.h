#pragma once

#include "platform/Failure.h"
#include "platform/Mutex.h"

#include <utility>
#include <vector>

namespace tabwright::platform {

/// Collects notices from far below while a run goes on, for the caller that started it. Safe from several threads.
///
///     const auto notices = std::make_shared<Notices>();
///     run({.deadline = deadline, .notices = notices});
///     for (const Notice& notice : notices->all()) ...
///
/// A notice that is given twice comes twice.
class Notices {
public:
  /// Most givers call `giveNotice` with the limits of their call.
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
  /// Its members are copied out under it, so that no reader sees one being added.
  mutable Mutex mutex_;
  std::vector<Notice> noticed_ GUARDED_BY(mutex_);
};

} // namespace tabwright::platform
