#pragma once

#include "platform/Mutex.h"
#include "platform/linux/FileDescriptor.h"

#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>

namespace tabwright::platform {

/// The store's own thread: writes on request, and reports changes of the settings file. Safe to use from
/// any thread. It starts with the first request and ends with this.
class SettingsThread {
public:
  struct Work {
    std::function<void()> write;       ///< a tenth of a second after `requestWrite`, once for all requests until then
    std::function<void()> fileChanged; ///< after `follow`, for any change of the file, our own included
  };

  explicit SettingsThread(Work work) : work_(std::move(work)) {}
  /// Waits for what is under way; a request that hasn't been begun is dropped.
  ~SettingsThread();
  SettingsThread(const SettingsThread&) = delete;
  SettingsThread& operator=(const SettingsThread&) = delete;

  void requestWrite();
  /// Follows the file from now on; its folder must exist. Logs what the system refuses, and goes on without.
  void follow(const std::filesystem::path& file);

private:
  void ensureRunning() REQUIRES(mutex_);
  void run(const std::stop_token& stop);
  void wake() const REQUIRES(mutex_);

  Work work_;
  Mutex mutex_;
  FileDescriptor wakeUp_ GUARDED_BY(mutex_);
  FileDescriptor watch_ GUARDED_BY(mutex_);
  std::string fileName_ GUARDED_BY(mutex_);
  bool isWriteRequested_ GUARDED_BY(mutex_) = false;
  std::jthread thread_ GUARDED_BY(mutex_);
};

} // namespace tabwright::platform
