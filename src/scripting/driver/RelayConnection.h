#pragma once

#include "devtools/PendingCall.h"
#include "platform/CallLimits.h"
#include "platform/Mutex.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/driver/HelperCalls.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <thread>
#include <unordered_map>
#include <vector>

namespace tabwright::scripting {

/// The socket of a relay (`tabwright-relay`), which a browser starts for the helper in each of its profiles.
struct RelayPlace {
  std::filesystem::path socket;
  pid_t relay = 0; ///< the relay's process, a child of the browser's
};

/// The relays of a browser that runs, one for each of its profiles that has the helper; the last started first.
/// Connects to nothing, throws nothing: a socket may be left over by a relay that has ended meanwhile.
[[nodiscard]] std::vector<RelayPlace> findRelays(const platform::RunningBrowser& browser);

/// Told of what a helper reports by itself, on the connection's thread. Neither may block; an empty one isn't called.
struct RelayListener {
  std::function<void()> changed{}; ///< the browser's windows or tabs have changed, or the relay has ended
  /// The browser has told of all that an evaluation has brought about, whose answer had this number.
  std::function<void(std::int64_t probe)> settled{};
};

/// The helper in one profile of a browser, reached through the relay that the browser has started for it: no debugging
/// port, no consent. Over a Unix socket go frames of four bytes of length, in the machine's order, and JSON.
///
///     const auto helper =
///         RelayConnection::open(findRelays(browser).at(0), browser, {.changed = [&] { changes.add(); }}, limits);
///     helper->perform("snapshot", {}, HelperCalls::Repeat::allowed, limits);
///
/// When the relay ends, every call under way and every later one fails with `lost`. When the helper answers nothing at
/// all, not even a plain question, calls fail with `notAnswering`, and the connection stays.
///
/// Safe to use from any thread. Has a thread of its own that reads.
class RelayConnection final : public HelperCalls {
public:
  /// Connects. The listener may be called until this is destroyed. Throws DevToolsFailure: `unreachable` when nobody
  /// listens, or somebody else than a child of that browser.
  static std::shared_ptr<RelayConnection> open(const RelayPlace& place, const platform::RunningBrowser& browser,
                                               RelayListener listener, const platform::CallLimits& limits);
  /// Ends the thread; calls under way fail with `lost`.
  ~RelayConnection() override;
  RelayConnection(const RelayConnection&) = delete;
  RelayConnection& operator=(const RelayConnection&) = delete;

  /// As HelperCalls has it. A call without a deadline ends after 30 seconds. Nothing is ever sent twice.
  boost::json::value perform(std::string_view command, const boost::json::object& parameters, Repeat repeat,
                             const platform::CallLimits& limits) override;

  /// False once the relay has ended, and for ever then.
  [[nodiscard]] bool isOpen() const { return isOpen_; }
  /// Waits until the helper has answered anything, unless it has sent something lately. Throws DevToolsFailure.
  void requireAnswer(const platform::CallLimits& limits);
  /// The messages so far, for benchmarks.
  [[nodiscard]] std::uint64_t sent() const { return sent_; }
  [[nodiscard]] std::uint64_t received() const { return received_; }

private:
  RelayConnection(platform::FileDescriptor socket, RelayListener listener);

  std::shared_ptr<devtools::PendingCall> send(std::string_view command, const boost::json::object& parameters,
                                              const platform::CallLimits& limits);
  /// Waits for the call, and asks the helper a plain question whenever it has been silent for long.
  boost::json::value await(devtools::PendingCall& call, const platform::CallLimits& limits);
  void write(std::string_view frame, const platform::CallLimits& limits);
  /// Reads until the relay ends.
  void read();
  void take(std::string_view message);
  void end(const std::string& reason);

  const platform::FileDescriptor socket_;
  const RelayListener listener_;
  std::atomic<bool> isOpen_ = true;
  std::atomic<std::uint64_t> sent_ = 0;
  std::atomic<std::uint64_t> received_ = 0;
  std::atomic<std::chrono::steady_clock::time_point> heardAt_;

  platform::Mutex writing_;
  platform::Mutex mutex_;
  std::int64_t lastID_ GUARDED_BY(mutex_) = 0;
  /// Weak: who gives up on a call drops it.
  std::unordered_map<std::int64_t, std::weak_ptr<devtools::PendingCall>> calls_ GUARDED_BY(mutex_);
  std::string lossReason_ GUARDED_BY(mutex_);
  std::jthread reader_; // the last member: it uses the others
};

} // namespace tabwright::scripting
