#pragma once

#include "devtools/Session.h"
#include "devtools/Waiting.h"
#include "platform/Mutex.h"

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

/// The helper inside one connected browser: its worker, found, woken, or loaded if need be.
///
/// The browser stops the worker when nobody has used it for half a minute, loses it when it is updated, and has none at
/// first. Several processes may see that at once: a lock on the profile lets one of them load the helper, and the
/// others find it. A helper older than the one in the directory is replaced; a newer one is used as it is.
///
/// Safe to use from any thread.
class HelperWorker {
public:
  /// `onChange` is called on the connection's thread whenever the browser's windows or tabs have changed.
  HelperWorker(std::shared_ptr<devtools::Connection> connection, HelperPlace place, std::function<void()> onChange);

  /// Makes the helper ready. Throws DevToolsFailure; `refused` when the browser takes no helper.
  void prepare(const platform::CallLimits& limits);

  enum class Repeat {
    allowed, ///< doing it twice is the same as doing it once
    never,   ///< when the worker ends in the middle, whether it was done is unknown: the call fails
  };
  /// Carries out one of the helper's commands and yields its value. Throws DriverFailure for what the helper refuses,
  /// and DevToolsFailure.
  boost::json::value perform(std::string_view command, const boost::json::object& parameters, Repeat repeat,
                             const platform::CallLimits& limits);

private:
  std::shared_ptr<devtools::Session> requireSession(const platform::CallLimits& limits);
  std::shared_ptr<devtools::Session> attachToRunning(const platform::CallLimits& limits);
  std::shared_ptr<devtools::Session> wakeOrLoad(const platform::CallLimits& limits);
  std::shared_ptr<devtools::Session> awaitWorker(const platform::CallLimits& limits);
  bool isInstalled(const platform::CallLimits& limits);
  void wake(const platform::CallLimits& limits);
  void load(const platform::CallLimits& limits);

  std::shared_ptr<devtools::Connection> connection_;
  const HelperPlace place_;
  const std::string version_;
  const std::function<void()> onChange_;
  devtools::Turn turn_;
  platform::Mutex mutex_;
  std::shared_ptr<devtools::Session> session_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
