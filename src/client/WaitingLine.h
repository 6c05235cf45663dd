#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace tabwright::client {

/// One line that tells a person at a terminal what a command waits for, once it has waited for two seconds. It is
/// erased before anything else is written. It doesn't wake up by itself: whoever waits asks it for the time. On one
/// thread.
///
///     WaitingLine line("ClickElement", now, write, 80);
///     ... wait for line.left(), then line.showIfDue() ...
///     line.erase();
class WaitingLine {
public:
  using Clock = std::chrono::steady_clock;

  /// `write` gets what goes to the terminal, which is `width` cells wide, as it stands; no byte of `what` steers it.
  WaitingLine(const std::string& what, std::function<Clock::time_point()> now,
              std::function<void(const std::string&)> write, int width);
  ~WaitingLine() { erase(); }
  WaitingLine(const WaitingLine&) = delete;
  WaitingLine& operator=(const WaitingLine&) = delete;

  /// The time until the line is due; zero when it stands there, and the whole two seconds while it is held.
  [[nodiscard]] std::chrono::milliseconds left() const;
  [[nodiscard]] bool isShown() const { return isShown_; }
  /// Nothing before the two seconds are over, while it is held, or when it stands there.
  void showIfDue();

  /// Takes the line away, and begins to wait anew.
  void erase();
  /// The same, and waits for nothing until `resume`: somebody is asked.
  void hold();
  void resume();

  /// Takes a line away, for those who can't wait for the object: signal handlers.
  static constexpr const char eraser[] = "\r\x1b[K";

private:
  const std::string text_;
  const std::function<Clock::time_point()> now_;
  const std::function<void(const std::string&)> write_;
  Clock::time_point since_;
  bool isShown_ = false;
  bool isHeld_ = false;
};

/// One for this process's terminal; null when standard error is none.
[[nodiscard]] std::unique_ptr<WaitingLine> waitingLineAtTerminal(const std::string& what);

} // namespace tabwright::client
