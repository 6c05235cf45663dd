// One receiver for the whole process. Whether a level is on is a single atomic read, so that a log that is off costs
// nothing; lines take a shared lock to get at the receiver.
#include "platform/Logger.h"

#include "platform/LogReceiver.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <shared_mutex>

namespace tabwright::platform {
namespace {

constexpr int nothingIsOn = static_cast<int>(LogLevel::error) + 1;

struct Log {
  std::atomic<int> lowestLevel = nothingIsOn;
  std::shared_mutex mutex;
  std::shared_ptr<const LogReceiver> receiver;
};

// Never destroyed: threads may log while the process ends.
Log& processLog() {
  static Log& log = *new Log;
  return log;
}

} // namespace

void setLogReceiver(LogLevel lowestLevel, LogReceiver receiver) {
  Log& log = processLog();
  const std::unique_lock lock(log.mutex);
  log.lowestLevel = receiver ? static_cast<int>(lowestLevel) : nothingIsOn;
  log.receiver = receiver ? std::make_shared<const LogReceiver>(std::move(receiver)) : nullptr;
}

Logger::Logger(std::string category) : category_(std::move(category)) {}

bool Logger::isOn(LogLevel level) const {
  return static_cast<int>(level) >= processLog().lowestLevel.load(std::memory_order_relaxed);
}

void Logger::write(LogLevel level, std::string_view text) const {
  Log& log = processLog();
  std::shared_ptr<const LogReceiver> receiver;
  {
    const std::shared_lock lock(log.mutex);
    if (static_cast<int>(level) < log.lowestLevel)
      return;
    receiver = log.receiver;
  }
  if (receiver)
    (*receiver)(level, category_, text);
}

} // namespace tabwright::platform
