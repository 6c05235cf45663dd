// The action runs in this process, whose terminal, files and standard input are the caller's own.
#include "app/Composition.h"
#include "app/Interruptible.h"
#include "app/ResultView.h"
#include "app/RunAction.h"
#include "app/TerminalHost.h"
#include "app/TextInput.h"
#include "app/commands/Commands.h"

#include <iostream>
#include <unistd.h>
#include <utility>

namespace tabwright::app {
namespace {

class ThisProcess final : public RunCaller {
public:
  platform::Task<std::string> read(std::string file) override {
    co_return file == "-" ? readStandardInput() : readTextFile(file);
  }
  platform::Task<std::optional<std::string>> ask(std::string question) override {
    co_return co_await TerminalHost::askInterruptibly(std::move(question));
  }
  void tell(std::string text) override { std::cerr << text; }
};

platform::Task<void> runAndKeep(const host::Catalogue& catalogue, ActionRun run, RunCaller& caller,
                                std::string& output) {
  output = co_await runAction(catalogue, std::move(run), caller);
}

} // namespace

ExitCode run(RunCommand command) {
  Composition composition;
  ThisProcess caller;
  ActionRun run{.command = std::move(command), .directory = {}, .terminalWidth = {}};
  if (::isatty(STDOUT_FILENO) == 1)
    run.terminalWidth = terminalWidth();
  std::string output;
  runInterruptibly(runAndKeep(composition.catalogue(), std::move(run), caller, output));
  std::cout << output;
  return ExitCode::done;
}

} // namespace tabwright::app
