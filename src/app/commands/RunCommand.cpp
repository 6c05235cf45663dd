// The action runs in this process, whose terminal, files and standard input are the caller's own: the road of
// --no-host, and of all that the background host can't do for its caller. Everything but the caller is the host's code,
// so both roads answer alike.
#include "app/Composition.h"
#include "app/Interruptible.h"
#include "app/RunAction.h"
#include "app/TerminalHost.h"
#include "app/TextInput.h"
#include "app/commands/Commands.h"
#include "client/CallerSide.h"

#include <iostream>
#include <utility>

namespace tabwright::app {
namespace {

class ThisProcess final : public RunCaller {
public:
  explicit ThisProcess(client::WaitingLine* waiting) : waiting_(waiting) {}

  platform::Task<std::string> read(std::string file) override {
    co_return file == "-" ? readStandardInput() : readTextFile(file);
  }
  [[nodiscard]] bool canAsk() const override { return TerminalHost::isTerminal(); }
  platform::Task<std::optional<std::string>> ask(std::string question) override {
    if (waiting_)
      // The line below the question is for the answer.
      waiting_->hold();
    std::optional<std::string> answer = co_await TerminalHost::askInterruptibly(std::move(question));
    if (waiting_)
      waiting_->resume();
    co_return answer;
  }
  void print(std::string output, std::string error) override {
    if (waiting_)
      waiting_->erase();
    std::cout << output << std::flush;
    std::cerr << error;
  }

private:
  client::WaitingLine* const waiting_;
};

platform::Task<void> runAndKeep(const host::Catalogue& catalogue, ActionRun run, RunCaller& caller,
                                std::string& output) {
  output = co_await runAction(catalogue, std::move(run), caller);
}

} // namespace

ExitCode run(RunCommand command) {
  Composition composition;
  const auto waiting = client::waitingLineAtTerminal(command.name);
  ThisProcess caller(waiting.get());
  const client::TerminalFacts terminal = client::terminalFacts();
  ActionRun run{.command = std::move(command),
                .directory = {},
                .isShownOnTerminal = terminal.isOutput,
                .terminalWidth = static_cast<std::size_t>(terminal.width)};
  std::string output;
  runInterruptibly(runAndKeep(composition.catalogue(), std::move(run), caller, output), waiting.get());
  std::cout << output;
  return ExitCode::done;
}

} // namespace tabwright::app
