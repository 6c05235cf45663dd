#pragma once

#include "actions/ActionServices.h"
#include "actions/SecondsOf.h"
#include "engine/TargetContext.h"
#include "intents/ActionHost.h"
#include "intents/Intent.h"
#include "platform/Task.h"

#include <boost/json/value.hpp>

#include <concepts>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::actions {

using intents::Parameter;

struct TabTarget;

/// The base of all actions: it keeps the order in which a run's steps happen, and the preconditions that an action
/// declares instead of testing them.
///
/// An action's constructor declares what it needs; `run` does the work. The steps of `perform` are
///
///     1  the preconditions, in declared order; the first that fails ends the run with a `NeedsValue` or other failure
///     2  `prepare`
///     3  the self-timed quit is put off, and the run is counted
///     4  `run`
///     5  the pause, after a success
///     6  the value
///
/// A failure ends the run where it happens; what was counted stays counted. One object serves one run.
class ActionFrame : public intents::Intent {
public:
  /// Actions' full type names are this and the short name.
  static constexpr std::string_view typeNamePrefix = "Oskel_Beta_";

  /// Runs the action with its parameters as they are and yields its value as JSON of `resultType()`, null for nothing.
  /// Throws `NeedsValue` for a missing value, else the failure of whatever went wrong. `host` outlives the run.
  platform::Task<boost::json::value> perform(intents::ActionHost& host);

  /// The finished program that `perform` would run, made without touching a browser, the clock or the counter. Throws
  /// as the preconditions do, and `UsageError` for an action that runs no program or whose target is the frontmost
  /// browser, which only a run can tell.
  [[nodiscard]] std::string scriptText();

protected:
  /// The value and the success of `run`. Only a success is followed by the pause.
  struct Outcome {
    enum class Success : bool { no, yes };

    boost::json::value value;
    Success success = Success::yes;
  };

  /// The moment at which a run is put on record (step 3): most actions validate first, a few count every attempt, some
  /// do it inside `run`, by calling `registerRun` there.
  enum class Registration { afterPreconditions, beforePreconditions, insideRun };

  /// `name` is the action's short name, `table` that of its texts. `services` outlives the action.
  ActionFrame(const ActionServices& services, std::string name, std::string_view table, const intents::Hints& hints)
      : Intent(std::move(name), table, hints), services_(services) {}

  // Declarations, for an action's constructor.

  /// The text must hold something beside white space; it is used as it was entered.
  void requireText(const Parameter<std::string>& text);
  /// Any other condition: throws when it doesn't hold.
  void require(std::function<void()> precondition) { preconditions_.push_back(std::move(precondition)); }
  /// The browser to work in is that of the tab that the group of parameters names: `aimAt` and `takeTargetFrom` in one.
  void aimAtTab(TabTarget& tab);
  /// The browser to work in is the value of `targetContext` …
  template <std::derived_from<engine::TargetContext> Target>
  void aimAt(const Parameter<Target>& targetContext) {
    aim_ = [&targetContext] { return *targetContext; };
  }
  /// … but while `selection` is `choice`, `entity` (a tab or window) must have a value, and its browser replaces
  /// `targetContext`. With another choice `entity` isn't looked at.
  template <class Entity, class Selection>
  void takeTargetFrom(const Parameter<Entity>& entity, const Parameter<Selection>& selection, Selection choice,
                      Parameter<engine::TargetContext>& targetContext);
  /// For actions without `targetContext`: the browser is that of the tab or window.
  template <class Entity>
  void aimAtOwnerOf(const Parameter<Entity>& entity);
  /// Wait after a success for the seconds that an enum's raw value tells.
  template <intents::DeclaredEnum Delay>
  void pauseAfterSuccess(const Parameter<Delay>& delay);
  /// Another moment than `afterPreconditions`.
  void registerRuns(Registration moment) { registration_ = moment; }

  // Means, for an action's own steps.

  [[nodiscard]] const ActionServices& services() const { return services_; }
  /// The browser to work in, once the preconditions hold.
  [[nodiscard]] engine::TargetContext target() const { return aim_(); }
  /// The reference of the tab or window that the run is aimed at; empty when it is none in particular.
  [[nodiscard]] std::string aimedReference() const { return reference_ ? reference_() : std::string(); }
  /// The browser that the target means: the frontmost one, found by the lookup's script, for the entry of that name.
  platform::Task<engine::TargetContext> resolved(engine::TargetContext target);
  /// Step 3.
  void registerRun();

  // Steps, for an action to override.

  /// Step 2: what must happen before the run counts, such as asking the user. Nothing by default.
  virtual platform::Task<void> prepare(intents::ActionHost& host);
  /// Step 4: the work.
  virtual platform::Task<Outcome> run(intents::ActionHost& host) = 0;
  /// The program of a run, after the preconditions. Throws `UsageError` by default.
  [[nodiscard]] virtual std::string buildScriptText() const;

private:
  /// Throws what the first one that fails throws.
  void checkPreconditions() const;
  /// Step 5. A cancelled pause ends at once, and the value is given all the same.
  platform::Task<void> pause();

  /// The rest is left behind by the declarations above, and read while a run goes on.
  const ActionServices& services_;
  std::vector<std::function<void()>> preconditions_;
  std::function<engine::TargetContext()> aim_;
  std::function<std::string()> reference_;
  std::function<double()> pauseSeconds_;
  Registration registration_ = Registration::afterPreconditions;
};

template <class Entity, class Selection>
void ActionFrame::takeTargetFrom(const Parameter<Entity>& entity, const Parameter<Selection>& selection,
                                 Selection choice, Parameter<engine::TargetContext>& targetContext) {
  declare({&entity, intents::is(selection, choice)});
  reference_ = [&entity, &selection, choice] { return *selection == choice ? (*entity).fullID : std::string(); };
  require([&entity, &selection, choice, &targetContext] {
    if (*selection == choice)
      targetContext.set((*entity).targetContext);
  });
}

template <class Entity>
void ActionFrame::aimAtOwnerOf(const Parameter<Entity>& entity) {
  aim_ = [&entity] { return (*entity).targetContext; };
  reference_ = [&entity] { return (*entity).fullID; };
}

template <intents::DeclaredEnum Delay>
void ActionFrame::pauseAfterSuccess(const Parameter<Delay>& delay) {
  pauseSeconds_ = [&delay] { return secondsOf(*delay); };
}

} // namespace tabwright::actions
