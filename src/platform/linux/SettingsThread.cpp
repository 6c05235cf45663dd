// One poll over two descriptors: an eventfd that wakes the thread for a request or its end, and the inotify queue of
// the folder. The folder is watched, not the file, since every write puts another file in its place.
#include "platform/linux/SettingsThread.h"

#include "platform/FileFailure.h"
#include "platform/Logger.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tabwright::platform {
namespace {

// The action that asked for the write is still running, and matters more.
constexpr std::chrono::milliseconds delayOfWrites{100};

const Logger threadLog("UserDefaults");

// Takes all events from the queue. True when one of them was about the file.
bool isAboutFile(int watch, const std::string& fileName) {
  bool isAbout = false;
  alignas(inotify_event) std::array<char, 8192> buffer;
  for (;;) {
    const ssize_t length = read(watch, buffer.data(), buffer.size());
    if (length <= 0)
      return isAbout;
    for (const char* place = buffer.data(); place < buffer.data() + length;) {
      inotify_event event{};
      std::memcpy(&event, place, sizeof event);
      // A queue that ran over may have lost the event about the file.
      isAbout |= (event.mask & IN_Q_OVERFLOW) != 0 || (event.len > 0 && fileName == place + sizeof event);
      place += sizeof event + event.len;
    }
  }
}

} // namespace

SettingsThread::~SettingsThread() {
  const MutexLock lock(mutex_);
  thread_.request_stop();
  wake();
}

void SettingsThread::requestWrite() {
  const MutexLock lock(mutex_);
  isWriteRequested_ = true;
  ensureRunning();
  wake();
}

void SettingsThread::follow(const std::filesystem::path& file) {
  const MutexLock lock(mutex_);
  // Every observer asks for it.
  if (watch_.isOpen())
    return;
  FileDescriptor watch(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  // A rename onto the file, one away from it, a write in place, its removal.
  constexpr std::uint32_t events = IN_MOVED_TO | IN_MOVED_FROM | IN_CLOSE_WRITE | IN_DELETE;
  if (!watch.isOpen() || inotify_add_watch(watch.number(), file.parent_path().c_str(), events) < 0) {
    threadLog.error("{}", FileFailure("follow", file, errno).errorDescription());
    return;
  }
  watch_ = std::move(watch);
  fileName_ = file.filename().string();
  ensureRunning();
  wake();
}

void SettingsThread::ensureRunning() {
  if (!wakeUp_.isOpen())
    wakeUp_ = FileDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (thread_.joinable() || !wakeUp_.isOpen())
    return;
  try {
    thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
  } catch (const std::system_error& error) { // the destructor of the store writes, then
    threadLog.error("No thread for the settings: {}", error.what());
  }
}

void SettingsThread::wake() const {
  const std::uint64_t one = 1;
  if (!wakeUp_.isOpen())
    return;
  [[maybe_unused]] const ssize_t ignored = write(wakeUp_.number(), &one, sizeof one); // full means that it is awake
}

void SettingsThread::run(const std::stop_token& stop) {
  using Clock = std::chrono::steady_clock;
  std::optional<Clock::time_point> writeTime;
  while (!stop.stop_requested()) {
    int watch = -1;
    int wakeUp = -1;
    std::string fileName;
    bool isWriteRequested = false;
    {
      const MutexLock lock(mutex_);
      watch = watch_.number();
      wakeUp = wakeUp_.number();
      fileName = fileName_;
      isWriteRequested = std::exchange(isWriteRequested_, false);
    }
    // The first request sets the time; those until then go along.
    if (isWriteRequested && !writeTime)
      writeTime = Clock::now() + delayOfWrites;
    if (writeTime && Clock::now() >= *writeTime) {
      writeTime.reset();
      work_.write();
    }

    std::array<pollfd, 2> waits{{{.fd = wakeUp, .events = POLLIN, .revents = 0},
                                 {.fd = watch, .events = POLLIN, .revents = 0}}}; // poll passes over -1
    int milliseconds = -1;
    if (writeTime)
      milliseconds = static_cast<int>(
          std::max<std::int64_t>(0, std::chrono::ceil<std::chrono::milliseconds>(*writeTime - Clock::now()).count()));
    if (poll(waits.data(), waits.size(), milliseconds) < 0 && errno != EINTR)
      return;
    // Taken back to zero, so that the next poll sleeps.
    if (waits[0].revents != 0) {
      std::uint64_t count = 0;
      [[maybe_unused]] const ssize_t ignored = read(wakeUp, &count, sizeof count);
    }
    if (waits[1].revents != 0 && isAboutFile(watch, fileName))
      work_.fileChanged();
  }
}

} // namespace tabwright::platform
