#include "shell/WindowlessApplication.h"

#include <utility>

namespace tabwright::shell {

WindowlessApplication::WindowlessApplication(Launch launch, std::function<void()> stop)
    : launch_(launch), stop_(std::move(stop)) {}

void WindowlessApplication::finishLaunching() {
  if (delegate_)
    delegate_->applicationDidFinishLaunching();
}

bool WindowlessApplication::isHidden() const {
  return launch_ == Launch::hidden;
}

std::vector<Window*> WindowlessApplication::windows() const {
  return {};
}

void WindowlessApplication::setAllowsAutomaticWindowTabbing(bool /*isAllowed*/) {} // there are no windows to gather

void WindowlessApplication::setDelegate(ApplicationDelegate* delegate) {
  delegate_ = delegate;
}

void WindowlessApplication::terminate() {
  // Taken away first: a delegate that quits again while it is notified finds nothing to do.
  const std::function<void()> stop = std::exchange(stop_, {});
  if (!stop)
    return;
  if (delegate_)
    delegate_->applicationWillTerminate();
  stop();
}

} // namespace tabwright::shell
