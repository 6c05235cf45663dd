#pragma once

#include "devtools/Session.h"
#include "devtools/Waiting.h"
#include "platform/Mutex.h"
#include "scripting/driver/HelperCalls.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace tabwright::scripting {

/// The folders of the helper and of the browser that it is for.
struct HelperPlace {
  std::filesystem::path directory;        ///< the unpacked helper, absolute; the browser loads it from there
  std::filesystem::path profileDirectory; ///< of the browser; locked while the helper is being loaded into it
};

/// The helper inside one browser that is connected by the protocol: its worker, found, woken, or loaded if need be.
///
/// The browser stops the worker when nobody has used it for half a minute, loses it when it is updated, and has none at
/// first. Several processes may see that at once: a lock on the profile lets one of them load the helper, and the
/// others find it. A helper older than the one in the directory is replaced; a newer one is used as it is.
///
///     HelperWorker worker(connection, {helperDirectory, profileDirectory}, [&] { changes.add(); });
///     worker.prepare(limits);
///     worker.perform("activateTab", {{"tab", 7}}, HelperWorker::Repeat::allowed, limits);
///
/// Safe to use from any thread. Commands run side by side; making the helper ready is done by one at a time.
class HelperWorker final : public HelperCalls {
public:
  /// `onChange` is called on the connection's thread whenever the browser's windows or tabs have changed, and on the
  /// caller's when another worker is taken: what was seen before is of unknown age then. It must not block. Throws
  /// DevToolsFailure `refused` when `place` holds no helper; connects to nothing.
  HelperWorker(std::shared_ptr<devtools::Connection> connection, HelperPlace place, std::function<void()> onChange);

  /// Makes the helper ready. Throws DevToolsFailure; `refused` when the browser takes no helper.
  void prepare(const platform::CallLimits& limits);

  boost::json::value perform(std::string_view command, const boost::json::object& parameters, Repeat repeat,
                             const platform::CallLimits& limits) override;

private:
  /// The session of a worker that is ready. Callers take turns at making one.
  std::shared_ptr<devtools::Session> requireSession(const platform::CallLimits& limits);
  /// The session of a worker that runs now and is new enough; null when there is none.
  std::shared_ptr<devtools::Session> attachToRunning(const platform::CallLimits& limits);
  /// The session of a worker that doesn't run yet, under the profile's lock.
  std::shared_ptr<devtools::Session> wakeOrLoad(const platform::CallLimits& limits);
  /// Waits for a worker that has been told to start.
  std::shared_ptr<devtools::Session> awaitWorker(const platform::CallLimits& limits);
  bool isInstalled(const platform::CallLimits& limits);
  void wake(const platform::CallLimits& limits);
  /// Loads the helper into the browser. Throws DevToolsFailure; `refused` where extensions can't be loaded.
  void load(const platform::CallLimits& limits);

  std::shared_ptr<devtools::Connection> connection_;
  const HelperPlace place_;
  /// Of the helper in our folder: a browser's own may be newer, but not older.
  const std::string version_;
  const std::function<void()> onChange_;
  devtools::Turn turn_;
  platform::Mutex mutex_;
  std::shared_ptr<devtools::Session> session_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
