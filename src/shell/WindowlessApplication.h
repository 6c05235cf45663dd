#pragma once

#include "shell/Application.h"

#include <functional>
#include <vector>

namespace tabwright::shell {

/// The starter of the process.
enum class Launch {
  hidden, ///< an action that wanted to run: the process quits by itself
  byUser, ///< the user: it stays until the user quits it
};

/// The application of a process that has no windows.
class WindowlessApplication final : public Application {
public:
  /// `stop` ends the process's work, such as its event loop. It is called once, on the main actor.
  WindowlessApplication(Launch launch, std::function<void()> stop);

  /// Says to the delegate that the process is ready. To be called once, on the main actor.
  void finishLaunching();

  /// By the `Launch` that was given, for the process's life.
  [[nodiscard]] bool isHidden() const override;
  /// Always empty.
  [[nodiscard]] std::vector<Window*> windows() const override;
  [[nodiscard]] Window* keyWindow() const override { return nullptr; }
  [[nodiscard]] Window* onboardingWindow() const override { return nullptr; }
  Window* makeOnboardingWindow() override { return nullptr; }
  bool openAddress(const std::string&) override { return false; }
  void revealFile(const std::filesystem::path&) override {}
  /// Does nothing.
  void setAllowsAutomaticWindowTabbing(bool isAllowed) override;
  void setDelegate(ApplicationDelegate* delegate) override;
  /// Notifies the delegate, then calls `stop`. Only the first call does.
  void terminate() override;

private:
  const Launch launch_;
  std::function<void()> stop_; ///< empty once it has been called
  ApplicationDelegate* delegate_ = nullptr;
};

} // namespace tabwright::shell
