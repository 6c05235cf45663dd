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
  static constexpr std::chrono::seconds longestWork{30};

  using ActionFrame::ActionFrame;

  /// `targetContext` of value ".focussed" becomes the frontmost browser. Throws as the lookup does.
  platform::Task<void> resolveFrontmostBrowser(Parameter<targets::ApplicationTarget>& targetContext);

  /// Brings the application of an id to the front, and starts it where it doesn't run. Nothing where there is none.
  platform::Task<std::optional<targets::RunningApplication>> tryToActivate(std::string id);

  /// Calls `work` with limits on a thread for what blocks, and yields its value.
  template <class Work>
  auto onThread(Work work) -> platform::Task<std::invoke_result_t<Work, const platform::CallLimits&>> {
    using Value = std::invoke_result_t<Work, const platform::CallLimits&>;
    return platform::onThread<Value>(services().threads, [this, work = std::move(work)](std::stop_token stop) {
      return work(limits(std::move(stop)));
    });
  }

  /// Hands what was noticed on the way to the host. For the end of a success.
  void giveNotices(intents::ActionHost& host) const;

private:
  [[nodiscard]] platform::CallLimits limits(std::stop_token stop = {}) const;

  const std::shared_ptr<platform::Notices> notices_ = std::make_shared<platform::Notices>();
};

} // namespace tabwright::actions
