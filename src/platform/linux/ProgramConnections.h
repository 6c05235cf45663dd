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

/// Connections to programs that listen for some themselves, as those of GTK do. A question takes half the time on one,
/// and an answer comes in a third, since no bus hands them on.
///
/// Programs are known by their unique names on the bus. A connection that nobody has used for a moment is closed: what
/// its program tells all who listen would pile up there. Safe to use from any thread.
///
///     if (auto own = programs.take(name, findAddress)) {
///       // ask and collect
///       programs.giveBack(name, std::move(own));
///     }
class ProgramConnections {
public:
  /// The time for which a connection that was given back is kept.
  static constexpr std::chrono::milliseconds longestIdle{100};
  /// The time for which held connections stay open when this process has ended before their dialogs.
  static constexpr std::chrono::minutes longestHold{10};

  /// Leaves held connections to a process that does nothing else; others are closed.
  ~ProgramConnections();

  /// Asks a program for the address at which it listens; empty when it doesn't.
  using FindAddress = std::function<std::string()>;

  /// Lends a connection, null to a program that offers none. `findAddress` is called once for a program. It may have
  /// been used before. If it can't be made, the program counts as one that offers none from then on.
  [[nodiscard]] std::unique_ptr<BusConnection> take(const std::string& program, const FindAddress& findAddress);
  /// As `take`, but a new one, for a call that may keep its connection busy.
  [[nodiscard]] std::unique_ptr<BusConnection> open(const std::string& program, const FindAddress& findAddress);
  /// Keeps a connection by which a program was told to do something, and sends nothing on it any more. A program of GTK
  /// works on that for as long as a dialog is open that it opened, and stands still at the next key after anything has
  /// come by the connection, its end too. When that is over isn't told: it is kept until `release` or the program's
  /// end, and for `longestHold` beyond the end of this process.
  void hold(const std::string& program, std::unique_ptr<BusConnection> connection);
  /// True while something is held of the program, even when the program has ended a moment ago.
  [[nodiscard]] bool holds(const std::string& program);
  /// Closes what is held of a program, which has no such dialog open.
  void release(const std::string& program);
  /// Takes back a connection on which nothing is pending.
  void giveBack(const std::string& program, std::unique_ptr<BusConnection> connection);

private:
  using Clock = std::chrono::steady_clock;
  /// A connection in the keeping of this.
  struct Kept {
    std::string program;
    std::unique_ptr<BusConnection> connection;
    Clock::time_point since;
  };

  /// Starts the thread that closes, if it doesn't run. A system that gives none is logged.
  void startCloser() REQUIRES(mutex_);
  /// The thread: closes what has been idle for long enough, and what is held of programs that have ended.
  void close(const std::stop_token& stop);

  Mutex mutex_;
  /// By program; an empty one says that it has none.
  std::map<std::string, std::string> addresses_ GUARDED_BY(mutex_);
  std::vector<Kept> idle_ GUARDED_BY(mutex_); ///< the longest idle first
  /// One for each action on a program since its last `release`.
  std::vector<Kept> held_ GUARDED_BY(mutex_);
  std::condition_variable_any gotSome_;
  std::jthread closer_ GUARDED_BY(mutex_); ///< runs from the first connection on
};

} // namespace tabwright::platform
