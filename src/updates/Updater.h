#pragma once

#include "platform/CallLimits.h"
#include "platform/Clock.h"
#include "platform/WorkerThreads.h"
#include "updates/UpdateOutcome.h"
#include "updates/UpdateSteps.h"

#include <boost/asio/any_io_executor.hpp>

#include <filesystem>
#include <functional>
#include <memory>

namespace tabwright::updates {

/// Looks for updates by itself once a day, and when it is asked, one cycle at a time. The work is done on threads of
/// its own; everything else, the callbacks among it, happens on the main actor.
///
///     Updater updater({.mainActor = loop.get_executor(), .clock = clock, …});
///     updater.start();                            // from now on by itself
///     updater.check();                            // now; `presenting` gets the outcome
class Updater {
public:
  /// All of it outlives the updater; the main actor's context also outlives what the updater has posted to it.
  struct Surroundings {
    boost::asio::any_io_executor mainActor;
    platform::Clock& clock;
    std::function<UpdateFacts()> facts;  ///< asked at the start of each cycle
    std::function<bool()> isWindowOpen;  ///< without one no look is taken by itself
    std::filesystem::path lastCheckFile; ///< see LastCheck
    platform::CallLimits limits = {};    ///< of all that the updater does
    // The callbacks of a cycle, in the order in which they come. The first three only for a feed that could be read.
    std::function<void()> didFinishLoading = {};
    std::function<void()> didFind = {};
    std::function<void()> didNotFind = {};
    std::function<void()> didFinishCycle = {};
    std::function<void(const UpdateOutcome&)> present = {}; ///< of what the user has asked for alone
  };

  explicit Updater(Surroundings surroundings);
  /// Stops what runs. No callback comes any more.
  ~Updater();
  Updater(const Updater&) = delete;
  Updater& operator=(const Updater&) = delete;

  /// Begins to look by itself, when a day has passed since the last look; while no window is open, and after a look
  /// that failed, an hour later. Further calls do nothing; nor does any in a build without a feed.
  void start();

  /// Looks now, or takes the look that is under way for the user's own.
  void check();

  /// Installs what the last look found. Looks first when none has found anything. While a cycle is under way it is a
  /// `check`.
  void install();

private:
  struct State;
  std::shared_ptr<State> state_;
};

} // namespace tabwright::updates
