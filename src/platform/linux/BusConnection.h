#pragma once

#include "platform/CallLimits.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <functional>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>

struct sd_bus;
struct sd_bus_message;

namespace tabwright::platform {

/// A message bus failed as a whole: it can't be reached, or went away. `what()` is a clause. Its callers translate it
/// into what the loss means for them.
struct BusLost : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// One call: whom, which object, and what. The texts live until `BusConnection::ask` returns. Names are those of D-Bus,
/// such as "org.a11y.Bus" and "/org/a11y/bus".
struct BusCall {
  const char* destination; ///< not sent on a connection to one program
  const char* path;
  const char* interface;
  const char* member;
};

/// A connection to a message bus (D-Bus), on which many calls are under way at once:
///
///     connection.ask(call, {}, [&](sd_bus_message* answer) { ... });
///     connection.ask(another, {}, [&](sd_bus_message* answer) { ... });
///     connection.collect(limits.within(500ms));
///
/// For one thread at a time. Answers that nobody has collected are dropped with the connection.
class BusConnection {
public:
  using Fill = std::function<void(sd_bus_message*)>; ///< appends arguments to a call
  /// Reads an answer, which may be an error (sd_bus_message_is_method_error(3)). May throw: `collect` passes it on.
  using Take = std::function<void(sd_bus_message*)>;

  /// Connects to the bus of the user's session, or to that at an address. Throws `BusLost`. The connection is made
  /// while the first answers are collected, so a bus that takes none may be noticed only then.
  [[nodiscard]] static std::unique_ptr<BusConnection> toSession();
  [[nodiscard]] static std::unique_ptr<BusConnection> to(const std::string& address);
  /// Connects to a program that listens at an address itself, without a bus between. Throws `BusLost`.
  [[nodiscard]] static std::unique_ptr<BusConnection> toProgram(const std::string& address);
  /// Calls that weren't answered are forgotten; their takers are never called.
  ~BusConnection();
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

  /// Sends a call, without waiting for anything. `take` gets the answer, an error too, during `collect`. `arguments` is
  /// called at once, and may be empty. Throws `BusLost`.
  void ask(const BusCall& call, const Fill& arguments, Take take);
  /// Sends a question for one property; the answer is a variant of it. `member` is its name.
  void askProperty(const BusCall& property, Take take);

  /// `silent` and `stopped` leave calls pending, whose answers a later `collect` still takes.
  enum class Outcome { answered, silent, stopped };
  /// Awaits the answers to all calls that were sent. `silent` when none has come for `patience`, or by the deadline;
  /// the connection should be dropped then, since late answers would follow. Throws `BusLost`. An answer of any call
  /// renews the patience. With a patience of zero it only takes what is there.
  Outcome collect(const CallLimits& limits, std::chrono::milliseconds patience);
  /// As `collect`, until `isEnough`. `isEnough` is asked after each look at what has come; answers beyond stay pending.
  Outcome collectUntil(const std::function<bool()>& isEnough, const CallLimits& limits,
                       std::chrono::milliseconds patience);

  /// Sends what a connection that is still being made has kept back. Outcomes as above.
  Outcome flush(const CallLimits& limits, std::chrono::milliseconds patience);

  /// Calls that were sent and not answered.
  [[nodiscard]] std::size_t pending() const noexcept { return unanswered_; }
  /// The receiver of the oldest call without an answer; empty when there is none. The name is the one that the call
  /// gave.
  [[nodiscard]] std::string silentReceiver() const;
  /// For others to hold; still read and closed by this.
  [[nodiscard]] int descriptor() const;
  /// False when the bus has gone in the meantime. Works off what has arrived, and so may call takers.
  [[nodiscard]] bool isAlive();

private:
  /// A call on its way, and the taker of its answer.
  struct Pending;
  /// Closes the connection before its last reference goes, lest messages that are queued keep it open.
  struct Close {
    void operator()(sd_bus* bus) const;
  };
  BusConnection(std::unique_ptr<sd_bus, Close> bus, bool isBus);
  /// A bus greets its clients and hands calls on by their destination; a program does neither.
  static std::unique_ptr<BusConnection> start(const std::string& address, bool isBus);
  /// Works off what has arrived. Throws what a taker has thrown.
  void process();

  std::unique_ptr<sd_bus, Close> bus_;
  const bool isBus_;         ///< rather than one program
  std::list<Pending> calls_; ///< its elements stay where they are
  std::size_t unanswered_ = 0;
  std::exception_ptr thrown_; ///< by a taker, on its way past the library
};

} // namespace tabwright::platform
