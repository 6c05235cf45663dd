#pragma once

#include "platform/linux/FileDescriptor.h"

#include <filesystem>
#include <functional>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>

namespace tabwright::platform {

/// The store's own thread: writes when it is asked to, and tells when the settings file has changed. Safe to use from
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
  void ensureRunning();
  void run(const std::stop_token& stop);
  void wake() const;
  [[nodiscard]] bool readEvents() const;

  Work work_;
  std::mutex mutex_; ///< guards what follows, which the thread only reads
  FileDescriptor wakeUp_;
  FileDescriptor watch_;
  std::string fileName_;
  bool isWriteRequested_ = false;
  std::jthread thread_;
};

} // namespace tabwright::platform
