#pragma once

#include "intents/ActionHost.h"

#include <optional>
#include <string>

namespace tabwright::app {

/// The person at the terminal, as far as an action's host may ask them: questions go to standard error, answers come
/// from standard input. Without a terminal on standard input there is nobody to ask.
class TerminalHost final : public intents::ActionHost {
public:
  /// True when standard input is a terminal; the output may be none.
  [[nodiscard]] static bool isTerminal();

  /// Asks a question and yields the line typed; nothing when there is no terminal or the input has ended. Blocks.
  [[nodiscard]] static std::optional<std::string> ask(const std::string& question);

  /// The same as a coroutine that holds no thread until the line is there: cancelling ends the wait with the
  /// `boost::system::system_error` of `operation_aborted`.
  [[nodiscard]] static platform::Task<std::optional<std::string>> askInterruptibly(std::string question);

  /// True for an answer that is a consent: it begins with "y" or "j" in either case.
  [[nodiscard]] static bool isYes(const std::string& answer);

  /// Every other answer is a refusal.
  platform::Task<void> requestConfirmation(intents::LocalizedText question) override;

  /// A line on standard error, at once.
  void notice(const platform::Notice& notice) override;
};

} // namespace tabwright::app
