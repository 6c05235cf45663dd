#pragma once

#include "actions/SharedParameters.h"
#include "platform/OnThread.h"
#include "targets/ApplicationTarget.h"
#include "targets/BrowserProbe.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace tabwright::actions {

/// An action that works on the desktop itself: on menus, or with the keyboard.
///
/// No script runs, but for finding the frontmost browser. What blocks goes to a thread, and ends after `longestWork`.
class DesktopAction : public ActionFrame {
protected:
  /// Of one step, be the desktop ever so slow.
  static constexpr std::chrono::seconds longestWork{30};

  using ActionFrame::ActionFrame;

  /// Brings the application of an id to the front, and starts it where it doesn't run. Nothing where there is none.
  platform::Task<std::optional<targets::RunningApplication>> tryToActivate(std::string id);

  /// Calls `work` with limits on a thread for what blocks, and yields its value, if it has one.
  template <class Work>
  auto onThread(Work work) {
    using Result = std::invoke_result_t<Work, const platform::CallLimits&>;
    using Value = std::conditional_t<std::is_void_v<Result>, intents::Nothing, Result>;
    return platform::onThread<Value>(services().threads, [this, work = std::move(work)](std::stop_token stop) -> Value {
      if constexpr (std::is_void_v<Result>)
        return work(limits(std::move(stop))), Value{};
      else
        return work(limits(std::move(stop)));
    });
  }

  /// Hands what was noticed on the way to the host. For the end of a success.
  void giveNotices(intents::ActionHost& host) const;

private:
  /// Limits whose time begins with the call.
  [[nodiscard]] platform::CallLimits limits(std::stop_token stop = {}) const;

  /// Shared with the limits of each step.
  const std::shared_ptr<platform::Notices> notices_ = std::make_shared<platform::Notices>();
};

} // namespace tabwright::actions
