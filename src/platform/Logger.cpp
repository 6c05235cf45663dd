// One list of receivers for the whole process: the program's own, without an owner, and listeners. Whether a level is
// on is a single atomic read, so that a log that is off costs nothing; lines take the lock to get at the list. The list
// is never changed but replaced, so that receivers are called without the lock: one that is slow, or takes its time
// with a disk, keeps no other thread from logging or from setting receivers.
#include "platform/Logger.h"

#include "platform/LogReceiver.h"
#include "platform/Mutex.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

namespace tabwright::platform {
namespace {

constexpr int nothingIsOn = static_cast<int>(LogLevel::error) + 1;

struct Receiving {
  const LogListener* owner;
  LogLevel lowestLevel;
  LogReceiver receiver;
};

struct Log {
  std::atomic<int> lowestLevel = nothingIsOn;
  Mutex mutex;
  std::shared_ptr<const std::vector<Receiving>>
      receivers GUARDED_BY(mutex) = std::make_shared<const std::vector<Receiving>>();
};

// Never destroyed: threads may log while the process ends.
Log& processLog() {
  static Log& log = *new Log;
  return log;
}

void setReceiver(const LogListener* owner, LogLevel lowestLevel, LogReceiver receiver) {
  Log& log = processLog();
  const MutexLock lock(log.mutex);
  std::vector<Receiving> receivers = *log.receivers;
  std::erase_if(receivers, [owner](const Receiving& one) { return one.owner == owner; });
  if (receiver)
    receivers.push_back({owner, lowestLevel, std::move(receiver)});
  int lowest = nothingIsOn;
  for (const Receiving& one : receivers)
    lowest = std::min(lowest, static_cast<int>(one.lowestLevel));
  log.lowestLevel = lowest;
  log.receivers = std::make_shared<const std::vector<Receiving>>(std::move(receivers));
}

} // namespace

void setLogReceiver(LogLevel lowestLevel, LogReceiver receiver) {
  setReceiver(nullptr, lowestLevel, std::move(receiver));
}

LogListener::LogListener(LogLevel lowestLevel, LogReceiver receiver) {
  setReceiver(this, lowestLevel, std::move(receiver));
}

LogListener::~LogListener() {
  setReceiver(this, LogLevel::error, {});
}

Logger::Logger(std::string category) : category_(std::move(category)) {}

bool Logger::isOn(LogLevel level) const {
  return static_cast<int>(level) >= processLog().lowestLevel.load(std::memory_order_relaxed);
}

void Logger::write(LogLevel level, std::string_view text) const {
  // Callers have asked, but for those that write a text as it is.
  if (!isOn(level))
    return;
  Log& log = processLog();
  std::shared_ptr<const std::vector<Receiving>> receivers;
  {
    const MutexLock lock(log.mutex);
    receivers = log.receivers;
  }
  for (const Receiving& one : *receivers) {
    if (level >= one.lowestLevel)
      one.receiver(level, category_, text);
  }
}

} // namespace tabwright::platform
