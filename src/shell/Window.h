#pragma once

#include <string>
#include <string_view>

namespace tabwright::shell {

/// The main window's `identifier()`.
inline constexpr std::string_view mainWindowIdentifier = "main";

/// A window of the program's own. On the main actor only.
class Window {
public:
  virtual ~Window() = default;

  /// A name for the program, not for users; empty for windows that have none.
  [[nodiscard]] virtual std::string identifier() const = 0;
  /// Takes the window away. It may be gone, and this pointer with it, when the call returns.
  virtual void close() = 0;
  /// Shows the window in front of all others, with the keyboard's focus.
  virtual void makeKeyAndOrderFront() = 0;
};

} // namespace tabwright::shell
