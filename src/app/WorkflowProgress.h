#pragma once

#include "host/workflow/WorkflowRunner.h"
#include "platform/Clock.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace tabwright::app {

/// Shows a person at a terminal what a workflow does: a line per step that does something, with the number of its line
/// in the file and, behind it, how long it took or that it failed. What steps print goes to `output`. Lines are
/// shortened to the terminal's width, and nothing in them steers it.
///
///     12  ClickElement cssSelector: #send … 0.31 s
///     13  repeat 1 of 3
///     14    CloseTab targetTab: chromium:8 … failed
class WorkflowProgress final : public host::workflow::WorkflowObserver {
public:
  /// `terminal` is `width` cells wide; both streams and the clock outlive the view.
  WorkflowProgress(std::ostream& terminal, std::size_t width, std::ostream& output, const platform::Clock& clock)
      : terminal_(terminal), width_(width), output_(output), clock_(clock) {}

  /// Ends a line that an interruption has left open.
  ~WorkflowProgress() override;
  WorkflowProgress(const WorkflowProgress&) = delete;
  WorkflowProgress& operator=(const WorkflowProgress&) = delete;

  /// The line above all others, before the first step; nothing for a workflow without a title.
  void showTitle(const std::string& title);

  void stepBegins(const host::workflow::Step& step, const host::workflow::Variables& variables,
                  std::size_t depth) override;
  void stepEnds(const host::workflow::Step& step, const std::string& failure) override;
  void roundBegins(const host::workflow::Step& step, std::size_t depth, std::size_t round, std::size_t rounds) override;
  void noticed(const host::workflow::Step& step, const platform::Notice& notice) override;
  void printed(const std::string& text) override;

private:
  /// The begin of a line, short enough for what follows behind it.
  [[nodiscard]] std::string lineFor(const host::workflow::Step& step, std::size_t depth, const std::string& text) const;

  std::ostream& terminal_;
  std::size_t width_;
  std::ostream& output_;
  const platform::Clock& clock_;
  double began_ = 0;
  bool isLineOpen_ = false;          ///< an action is under way
  std::vector<std::string> notices_; ///< of the action under way, for the lines beneath its own
};

/// Prints what steps print, and notices to the other stream, each with the line of its step; shows nothing else: for
/// pipes.
class WorkflowOutput final : public host::workflow::WorkflowObserver {
public:
  /// Both streams outlive it.
  WorkflowOutput(std::ostream& output, std::ostream& notices) : output_(output), notices_(notices) {}

  void stepBegins(const host::workflow::Step&, const host::workflow::Variables&, std::size_t) override {}
  void stepEnds(const host::workflow::Step&, const std::string&) override {}
  void roundBegins(const host::workflow::Step&, std::size_t, std::size_t, std::size_t) override {}
  void noticed(const host::workflow::Step& step, const platform::Notice& notice) override {
    notices_ << "line " << step.place.line << ": " << notice.sentence << std::endl;
  }
  void printed(const std::string& text) override { output_ << text << std::endl; } // at once, for who waits for it

private:
  std::ostream& output_;
  std::ostream& notices_;
};

} // namespace tabwright::app
