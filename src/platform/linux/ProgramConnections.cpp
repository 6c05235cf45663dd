#include "platform/linux/ProgramConnections.h"

#include "platform/Logger.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <system_error>
#include <utility>

namespace tabwright::platform {

namespace {

const Logger programsLog("ProgramConnections");

/// Unique names are never used again, so those of programs that have ended would add up.
constexpr std::size_t mostAddresses = 64;

} // namespace

ProgramConnections::~ProgramConnections() {
  std::jthread closer;
  const MutexLock lock(mutex_);
  closer = std::move(closer_);
  closer.request_stop();
} // the lock is gone before the thread is joined

std::unique_ptr<BusConnection> ProgramConnections::take(const std::string& program, const FindAddress& findAddress) {
  {
    const MutexLock lock(mutex_);
    const auto last = std::ranges::find(idle_.rbegin(), idle_.rend(), program, &Idle::program);
    if (last != idle_.rend()) {
      auto connection = std::move(last->connection);
      idle_.erase(std::next(last).base());
      if (connection->isAlive())
        return connection;
    }
  }
  return open(program, findAddress);
}

std::unique_ptr<BusConnection> ProgramConnections::open(const std::string& program, const FindAddress& findAddress) {
  std::string address;
  bool isKnown = false;
  {
    const MutexLock lock(mutex_);
    if (const auto known = addresses_.find(program); known != addresses_.end()) {
      address = known->second;
      isKnown = true;
    }
  }
  if (!isKnown)
    address = findAddress();
  std::unique_ptr<BusConnection> connection;
  if (!address.empty()) {
    try {
      connection = BusConnection::toProgram(address);
    } catch (const BusLost& lost) {
      programsLog.debug("No connection to an application: {}", lost.what());
      address.clear();
    }
  }
  const MutexLock lock(mutex_);
  if (addresses_.size() >= mostAddresses)
    addresses_.clear();
  addresses_.insert_or_assign(program, address);
  return connection;
}

void ProgramConnections::giveBack(const std::string& program, std::unique_ptr<BusConnection> connection) {
  const MutexLock lock(mutex_);
  if (!closer_.joinable()) {
    try {
      closer_ = std::jthread([this](const std::stop_token& stop) { closeIdle(stop); });
    } catch (const std::system_error& error) {
      programsLog.error("No thread to close connections: {}", error.what());
      return; // which closes this one
    }
  }
  idle_.push_back({program, std::move(connection), Clock::now()});
  gotIdle_.notify_one();
}

void ProgramConnections::closeIdle(const std::stop_token& stop) {
  MutexLock lock(mutex_);
  while (gotIdle_.wait(lock, stop, [this]() REQUIRES(mutex_) { return !idle_.empty(); })) {
    const Clock::time_point end = idle_.front().since + longestIdle;
    gotIdle_.wait_until(lock, stop, end, [] { return false; });
    const Clock::time_point now = Clock::now();
    std::erase_if(idle_, [now](const Idle& each) { return each.since + longestIdle <= now; });
  }
}

} // namespace tabwright::platform
