#pragma once

#include <string>
#include <string_view>

namespace tabwright::shell {

/// The main window's `identifier()`.
inline constexpr std::string_view mainWindowIdentifier = "main";
/// That of the setup's window.
inline constexpr std::string_view onboardingWindowIdentifier = "onboarding";

/// A window of the program's own. On the main actor only.
class Window {
public:
  virtual ~Window() = default;

  /// A name for the program, not for users; empty for windows that have none.
  [[nodiscard]] virtual std::string identifier() const = 0;
  /// Takes the window away. It may be gone, and this pointer with it, when the call returns; the setup's stays.
  virtual void close() = 0;
  [[nodiscard]] virtual bool isVisible() const = 0;
  virtual void setTitle(const std::string& title) = 0;
  /// Puts the window's content anew, as it is when the window is first shown, and lets it take the size that it wants.
  virtual void renewContent() = 0;
  /// Moves the window to the middle of its screen, where the desktop lets programs do so.
  virtual void center() = 0;
  /// Shows the window in front of all others, with the keyboard's focus.
  virtual void makeKeyAndOrderFront() = 0;
};

} // namespace tabwright::shell
