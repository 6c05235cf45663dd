#pragma once

#include "platform/Mutex.h"
#include "platform/linux/BusConnection.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace tabwright::platform {

/// Connections to programs that listen for some themselves, as those of GTK do. A question takes a third of the time on
/// one, since no bus hands it on.
///
/// Programs are known by their unique names on the bus. A connection that nobody has used for a moment is closed: what
/// its program tells all who listen would pile up there. Safe to use from any thread.
class ProgramConnections {
public:
  static constexpr std::chrono::milliseconds longestIdle{100};

  ~ProgramConnections();

  /// Asks a program for the address at which it listens; empty when it doesn't.
  using FindAddress = std::function<std::string()>;

  /// Lends a connection, null to a program that offers none. `findAddress` is called once for a program.
  [[nodiscard]] std::unique_ptr<BusConnection> take(const std::string& program, const FindAddress& findAddress);
  /// As `take`, but a new one, for a call that may keep its connection busy.
  [[nodiscard]] std::unique_ptr<BusConnection> open(const std::string& program, const FindAddress& findAddress);
  /// Takes back a connection on which nothing is pending; one with answers to come is dropped by whoever has it.
  void giveBack(const std::string& program, std::unique_ptr<BusConnection> connection);

private:
  using Clock = std::chrono::steady_clock;
  struct Idle {
    std::string program;
    std::unique_ptr<BusConnection> connection;
    Clock::time_point since;
  };

  void closeIdle(const std::stop_token& stop);

  Mutex mutex_;
  std::map<std::string, std::string> addresses_ GUARDED_BY(mutex_);
  std::vector<Idle> idle_ GUARDED_BY(mutex_); ///< the longest idle first
  std::condition_variable_any gotIdle_;
  std::jthread closer_ GUARDED_BY(mutex_); ///< runs from the first connection on
};

} // namespace tabwright::platform
