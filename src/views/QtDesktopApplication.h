#pragma once

#include "shell/Application.h"
#include "views/QtWindow.h"

#include <functional>
#include <memory>
#include <vector>

namespace tabwright::views {

/// The application of a process with windows, which the user has started: never hidden, and it ends when its last
/// window is closed. Made when there is a `QApplication`, and gone before it.
class QtDesktopApplication final : public shell::Application {
public:
  QtDesktopApplication();
  ~QtDesktopApplication() override;
  QtDesktopApplication(const QtDesktopApplication&) = delete;
  QtDesktopApplication& operator=(const QtDesktopApplication&) = delete;

  /// The ways in which its windows are made.
  struct Factories {
    std::function<std::unique_ptr<QtWindow>()> mainWindow;
    std::function<std::unique_ptr<QtWindow>()> onboardingWindow;
  };
  /// Says to the delegate that the process is ready, and shows the main window.
  void launch(Factories factories);

  [[nodiscard]] bool isHidden() const override { return false; }
  [[nodiscard]] std::vector<shell::Window*> windows() const override;
  [[nodiscard]] shell::Window* keyWindow() const override;
  [[nodiscard]] shell::Window* onboardingWindow() const override { return onboarding_.get(); }
  shell::Window* makeOnboardingWindow() override;
  bool openAddress(const std::string& address) override;
  void revealFile(const std::filesystem::path& file) override;
  /// Desktops of Linux gather no windows as tabs.
  void setAllowsAutomaticWindowTabbing(bool) override {}
  void setDelegate(shell::ApplicationDelegate* delegate) override { delegate_ = delegate; }
  void terminate() override;

private:
  shell::ApplicationDelegate* delegate_ = nullptr;
  Factories factories_;
  std::unique_ptr<QtWindow> main_;
  std::unique_ptr<QtWindow> onboarding_;
  bool hasTerminated_ = false;
};

} // namespace tabwright::views
