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
/// any thread. It starts with the first request and ends with this. It knows nothing of the settings but their file's
/// name and this work.
class SettingsThread {
public:
  /// Called on the store's thread, one at a time. Must not throw. They refer to nothing that ends before this.
  struct Work {
    std::function<void()> write;       ///< a tenth of a second after `requestWrite`, once for all requests until then
    std::function<void()> fileChanged; ///< after `follow`, for any change of the file, our own included
  };

  /// Starts nothing yet, so a process may still fork.
  explicit SettingsThread(Work work) : work_(std::move(work)) {}
  /// Waits for what is under way; a request that hasn't been begun is dropped. The caller writes what is left to write.
  ~SettingsThread();
  SettingsThread(const SettingsThread&) = delete;
  SettingsThread& operator=(const SettingsThread&) = delete;

  /// Returns at once. Nothing is written where the system gives no thread, which is logged.
  void requestWrite();
  /// Follows the file from now on; its folder must exist. Logs what the system refuses, and goes on without. Once that
  /// has succeeded, further calls do nothing.
  void follow(const std::filesystem::path& file);

private:
  /// Starts the thread, if it doesn't run.
  void ensureRunning() REQUIRES(mutex_);
  /// The thread: waits for requests and for changes in the folder.
  void run(const std::stop_token& stop);
  /// Makes the thread look at its members again.
  void wake() const REQUIRES(mutex_);

  Work work_;
  Mutex mutex_;
  /// An event that ends the thread's sleep, and the watch of the folder; neither is closed while the thread runs.
  FileDescriptor wakeUp_ GUARDED_BY(mutex_);
  FileDescriptor watch_ GUARDED_BY(mutex_);
  std::string fileName_ GUARDED_BY(mutex_);
  bool isWriteRequested_ GUARDED_BY(mutex_) = false;
  std::jthread thread_ GUARDED_BY(mutex_);
};

} // namespace tabwright::platform
