// Connections are lent as a stack, the last used first, so that those that aren't needed stay idle and are closed. One
// thread closes them, and looks once a second whether the programs of held ones still run. A held connection has to
// outlive this process too: when it ends, a small program inherits the open descriptors and keeps them, since only the
// last copy's end is the connection's.
#include "platform/linux/ProgramConnections.h"

#include "platform/Logger.h"
#include "platform/linux/DetachedProcess.h"
#include "platform/linux/FileDescriptor.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tabwright::platform {

namespace {

const Logger programsLog("ProgramConnections");

/// Unique names are never used again, so those of programs that have ended would add up.
constexpr std::size_t mostAddresses = 64;

constexpr std::chrono::seconds lookAtHeld{1};

/// Starts a process that inherits what is open now, and does nothing.
void holdElsewhere() {
  const auto seconds = std::chrono::seconds(ProgramConnections::longestHold).count();
  // Any program would do that waits and needs nothing.
  if (startDetached({"sleep", std::to_string(seconds)}, "/") != 0)
    programsLog.error("Connections by which applications were told to do something can’t be kept");
}

} // namespace

ProgramConnections::~ProgramConnections() {
  std::jthread closer;
  const MutexLock lock(mutex_);
  closer = std::move(closer_);
  closer.request_stop();
  std::vector<FileDescriptor> inherited;
  for (const Kept& each : held_) {
    if (each.connection->isAlive())
      inherited.emplace_back(dup(each.connection->descriptor())); // a duplicate is not closed where a program begins
  }
  if (!inherited.empty())
    holdElsewhere();
  held_.clear();
} // the lock is gone before the thread is joined

std::unique_ptr<BusConnection> ProgramConnections::take(const std::string& program, const FindAddress& findAddress) {
  {
    const MutexLock lock(mutex_);
    const auto last = std::ranges::find(idle_.rbegin(), idle_.rend(), program, &Kept::program);
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
  // Without the lock: the program is asked, which may take half a second.
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
  // All are forgotten; who is asked again tells the same.
  if (addresses_.size() >= mostAddresses)
    addresses_.clear();
  addresses_.insert_or_assign(program, address);
  return connection;
}

void ProgramConnections::giveBack(const std::string& program, std::unique_ptr<BusConnection> connection) {
  const MutexLock lock(mutex_);
  startCloser();
  if (!closer_.joinable())
    return; // which closes this one
  idle_.push_back({program, std::move(connection), Clock::now()});
  gotSome_.notify_one();
}

void ProgramConnections::hold(const std::string& program, std::unique_ptr<BusConnection> connection) {
  const MutexLock lock(mutex_);
  startCloser();
  held_.push_back({program, std::move(connection), Clock::now()});
  gotSome_.notify_one();
}

bool ProgramConnections::holds(const std::string& program) {
  const MutexLock lock(mutex_);
  return std::ranges::find(held_, program, &Kept::program) != held_.end();
}

void ProgramConnections::release(const std::string& program) {
  const MutexLock lock(mutex_);
  std::erase_if(held_, [&](const Kept& each) { return each.program == program; });
}

void ProgramConnections::startCloser() {
  if (closer_.joinable())
    return;
  try {
    closer_ = std::jthread([this](const std::stop_token& stop) { close(stop); });
  } catch (const std::system_error& error) {
    programsLog.error("No thread to close connections: {}", error.what());
  }
}

void ProgramConnections::close(const std::stop_token& stop) {
  MutexLock lock(mutex_);
  const auto hasSome = [this]() REQUIRES(mutex_) { return !idle_.empty() || !held_.empty(); };
  while (gotSome_.wait(lock, stop, hasSome) && !stop.stop_requested()) {
    // Idle ones are looked at when the oldest may be due, held ones more rarely.
    const auto pause = idle_.empty() ? std::chrono::milliseconds(lookAtHeld) : longestIdle;
    const auto hasIdle = [this, wasEmpty = idle_.empty()]() REQUIRES(mutex_) { return wasEmpty && !idle_.empty(); };
    // The first idle connection shortens a pause that was made for held ones.
    gotSome_.wait_for(lock, stop, pause, hasIdle);
    const Clock::time_point now = Clock::now();
    std::erase_if(idle_, [now](const Kept& each) { return each.since + longestIdle <= now; });
    std::erase_if(held_, [](const Kept& each) { return !each.connection->isAlive(); });
  }
}

} // namespace tabwright::platform
