// Two coroutines on the main actor: the schedule, which sleeps from look to look, and the cycle that is under way,
// which awaits the work on its thread. Both hold the state that the updater gives up in the end; from then on it is
// closed, and whatever comes back to it is let go.
#include "updates/Updater.h"

#include "platform/OnThread.h"
#include "platform/Task.h"
#include "updates/LastCheck.h"
#include "updates/UpdateFault.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>

#include <chrono>
#include <exception>
#include <optional>
#include <utility>

namespace tabwright::updates {
namespace {

namespace asio = boost::asio;

constexpr std::chrono::hours pauseWithoutWindow{1};

/// The outcome of the work of a cycle.
struct CycleResult {
  UpdateOutcome outcome;
  std::optional<UpdateCheck> check; ///< of a feed that could be read
};

platform::CallLimits stoppedBy(platform::CallLimits limits, std::stop_token stop) {
  limits.stop = std::move(stop);
  return limits;
}

// Every failure becomes an outcome, also one of the system's that nobody foresaw: the program goes on without updates.
template <class Work>
CycleResult outcomeOfWork(Work work) {
  try {
    return work();
  } catch (const platform::Failure& failure) {
    return {failedOutcome(failure), std::nullopt};
  } catch (const std::exception& error) {
    return {failedOutcome(platform::failure(UpdateFault::unreachable, error.what())), std::nullopt};
  }
}

} // namespace

struct Updater::State {
  explicit State(Surroundings given) : surroundings(std::move(given)), lastCheck(surroundings.lastCheckFile) {}

  enum class Wish { byItself, byUser, install };

  void call(const std::function<void()>& callback) const {
    if (!isClosed && callback)
      callback();
  }

  static platform::Task<void> followSchedule(std::shared_ptr<State> state);
  static void begin(const std::shared_ptr<State>& state, Wish wish);
  static platform::Task<void> runCycle(std::shared_ptr<State> state, Wish wish);
  static platform::Task<CycleResult> lookAtFeed(std::shared_ptr<State> state);
  static platform::Task<CycleResult> installFound(std::shared_ptr<State> state);

  const Surroundings surroundings;
  const LastCheck lastCheck;
  const std::shared_ptr<platform::WorkerThreads> threads = std::make_shared<platform::WorkerThreads>(1);
  asio::cancellation_signal scheduleEnd;
  asio::cancellation_signal cycleEnd;
  bool isClosed = false;
  bool isStarted = false;
  bool isCycling = false;
  bool isForUser = false;           ///< the cycle that is under way
  std::optional<UpdateCheck> found; ///< by the last look, if it found an update
};

platform::Task<CycleResult> Updater::State::lookAtFeed(std::shared_ptr<State> state) {
  std::function<CycleResult(std::stop_token)> work = [facts = state->surroundings.facts(),
                                                      limits = state->surroundings.limits](std::stop_token stop) {
    return outcomeOfWork([&]() -> CycleResult {
      if (facts.feed.empty())
        return {noFeedOutcome(findInstallation(facts.program, stoppedBy(limits, stop))), std::nullopt};
      UpdateCheck check = checkForUpdate(facts, stoppedBy(limits, stop));
      return {outcomeOf(check, facts.build), std::move(check)};
    });
  };
  CycleResult result = co_await platform::onThread<CycleResult>(state->threads, std::move(work));
  co_return result;
}

platform::Task<CycleResult> Updater::State::installFound(std::shared_ptr<State> state) {
  std::function<CycleResult(std::stop_token)> work = [facts = state->surroundings.facts(), check = *state->found,
                                                      limits = state->surroundings.limits](std::stop_token stop) {
    return outcomeOfWork([&]() -> CycleResult {
      const std::filesystem::path former = installUpdate(facts, check, stoppedBy(limits, stop));
      return {installedOutcome(*check.update, former), std::nullopt};
    });
  };
  CycleResult result = co_await platform::onThread<CycleResult>(state->threads, std::move(work));
  if (result.outcome.kind == UpdateOutcome::Kind::installed)
    state->found.reset();
  co_return result;
}

platform::Task<void> Updater::State::runCycle(std::shared_ptr<State> state, Wish wish) {
  std::optional<CycleResult> result;
  if (wish != Wish::install || !state->found) {
    result = co_await lookAtFeed(state);
    if (state->isClosed)
      co_return;
    if (result->check) {
      state->lastCheck.note(state->surroundings.clock.secondsSinceReferenceDate());
      state->found = result->check->update ? result->check : std::nullopt;
      state->call(state->surroundings.didFinishLoading);
      state->call(state->found ? state->surroundings.didFind : state->surroundings.didNotFind);
    }
  }
  if (wish == Wish::install && state->found)
    result = co_await installFound(state);
  if (state->isClosed)
    co_return;
  state->isCycling = false;
  const bool isForUser = std::exchange(state->isForUser, false);
  state->call(state->surroundings.didFinishCycle);
  if (isForUser && !state->isClosed && state->surroundings.present)
    state->surroundings.present(result->outcome);
}

void Updater::State::begin(const std::shared_ptr<State>& state, Wish wish) {
  state->isForUser = state->isForUser || wish != Wish::byItself;
  if (std::exchange(state->isCycling, true))
    return;
  asio::co_spawn(state->surroundings.mainActor, runCycle(state, wish),
                 asio::bind_cancellation_slot(state->cycleEnd.slot(), [state](const std::exception_ptr&) {
                   state->isCycling = false; // also where no thread could be made
                   state->isForUser = false;
                 }));
}

platform::Task<void> Updater::State::followSchedule(std::shared_ptr<State> state) {
  platform::Clock& clock = state->surroundings.clock;
  while (!state->isClosed) {
    const double wait = state->lastCheck.secondsUntilNext(clock.secondsSinceReferenceDate());
    if (wait > 0) {
      co_await clock.sleep(std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(wait)));
      continue;
    }
    if (state->surroundings.isWindowOpen())
      begin(state, Wish::byItself);
    // A feed that can't be read is looked at again later, and so is a window.
    co_await clock.sleep(pauseWithoutWindow);
  }
}

Updater::Updater(Surroundings surroundings) : state_(std::make_shared<State>(std::move(surroundings))) {}

Updater::~Updater() {
  state_->isClosed = true;
  state_->scheduleEnd.emit(asio::cancellation_type::terminal);
  state_->cycleEnd.emit(asio::cancellation_type::terminal);
}

void Updater::start() {
  if (std::exchange(state_->isStarted, true) || state_->surroundings.facts().feed.empty())
    return;
  asio::co_spawn(
      state_->surroundings.mainActor, State::followSchedule(state_),
      asio::bind_cancellation_slot(state_->scheduleEnd.slot(), [state = state_](const std::exception_ptr&) {}));
}

void Updater::check() {
  State::begin(state_, State::Wish::byUser);
}

void Updater::install() {
  State::begin(state_, State::Wish::install);
}

} // namespace tabwright::updates
