// `tabwright`: a process that lives for milliseconds. `run` goes to the background host over its socket; everything
// else is done by the full program, which this one becomes. Where no host can be had a run is done by that program,
// too: nothing has been run by then, so no action happens twice.
#include "client/CallerSide.h"
#include "client/HostConversation.h"
#include "client/HostIdentity.h"
#include "client/HostProgram.h"
#include "client/HostSocket.h"
#include "client/HostUnavailable.h"
#include "client/RunWords.h"
#include "client/RuntimeFolder.h"
#include "client/StandardStreams.h"
#include "client/WaitingLine.h"
#include "session/UTF8.h"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tabwright::client {
namespace {

constexpr int exitInterrupted = 130;
// A host that ends before it begins, time and again, has a reason that no further attempt mends.
constexpr int attempts = 5;

void say(std::string_view sentence) {
  static_cast<void>(writeText(STDERR_FILENO, "tabwright: " + std::string(sentence) + "\n"));
}

/// Says what befell a run here, in the form in which the host says it of an action. Type and case are for programs.
void tellOf(const char* type, const char* kind, const std::string& sentence, bool isJson) {
  if (isJson) {
    const boost::json::object report{{"type", type}, {"case", kind}, {"number", nullptr}, {"message", sentence}};
    static_cast<void>(writeText(STDERR_FILENO, boost::json::serialize(report) + "\n"));
  } else {
    say(sentence);
  }
}

int fail(const char* type, const char* kind, const std::string& sentence, bool isJson) {
  tellOf(type, kind, sentence, isJson);
  return EXIT_FAILURE;
}

/// True for a word that names a file as only the calling process can open it, such as "@/dev/fd/63".
bool namesOwnDescriptor(std::string_view word) {
  const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string_view::npos;
  const std::string_view value = equals == std::string_view::npos ? word : word.substr(equals + 1);
  return value.starts_with("@/dev/") || value.starts_with("@/proc/");
}

/// True when the host can do what the words behind "run" say as this process would do it itself. Words that mean
/// something else where they stand only cost the way through the host.
bool isForHost(const std::vector<std::string>& words) {
  const std::size_t name = placeOfAction(words);
  if (name == words.size() || words[name].starts_with("-")) // a question about “run” itself, or a mistake
    return false;
  char folder[PATH_MAX];
  if (!::getcwd(folder, sizeof folder) || !session::isUTF8(folder)) // which the message to the host couldn't name
    return false;
  for (const std::string& word : words) {
    if (word == runWords::noHost.word || !session::isUTF8(word) || namesOwnDescriptor(word))
      return false;
  }
  return true;
}

void endOnInterrupt() {
  std::signal(SIGPIPE, SIG_IGN);
  struct sigaction action{};
  action.sa_handler = [](int) { // the host cancels what runs for a connection that ends
    if (::isatty(STDERR_FILENO) == 1)
      static_cast<void>(writeAll(STDERR_FILENO, WaitingLine::eraser));
    ::_exit(exitInterrupted);
  };
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    ::sigaction(signal, &action, nullptr);
}

/// Thrown when standard output takes no more, by what it says of that.
struct OutputLost {
  int errorNumber;
};

void print(const std::string& output, const std::string& error) {
  // The error's text comes out even where the output doesn't.
  const int lost = writeText(STDOUT_FILENO, output);
  static_cast<void>(writeText(STDERR_FILENO, error));
  if (lost != 0)
    throw OutputLost{lost};
}

std::string wayWithoutHost() {
  return "“tabwright run " + std::string(runWords::noHost.word) + " …” does without it.";
}

int tell(const RunOutcome& outcome, bool isJson) {
  switch (outcome.kind) {
  case RunOutcome::Kind::done:
    print(outcome.output, outcome.error);
    return outcome.exitCode;
  case RunOutcome::Kind::lost:
    return fail("HostFailure", "lost",
                "The background host ended while the action ran: whether it has done its work isn’t known.", isJson);
  case RunOutcome::Kind::unresponsive:
    return fail("HostFailure", "unresponsive", "The background host doesn’t answer. " + wayWithoutHost(), isJson);
  case RunOutcome::Kind::refused:
    return fail("HostFailure", "refused", "The background host refused the request: " + outcome.error, isJson);
  case RunOutcome::Kind::notStarted:
    break;
  }
  return fail("HostFailure", "notStarted",
              "The background host ended before it had begun, each time it was started. Its log may tell why; " +
                  wayWithoutHost(),
              isJson);
}

int run(const std::string& program, const std::vector<std::string>& words) {
  const RuntimeFolder folder;
  const std::string identity = hostIdentity(program);
  endOnInterrupt();
  // Also for what goes wrong on the way to the host and back.
  const bool isJson = std::ranges::count(words, runWords::json.word) > 0;
  try {
    RunOutcome outcome;
    bool isEndTold = false;
    for (int attempt = 0; attempt < attempts; ++attempt) {
      const ConnectedHost host = connectToHost(folder, identity, program);
      if (host.isAfterUnexpectedEnd && !std::exchange(isEndTold, true))
        tellOf("HostFailure", "endedUnexpectedly",
               "The background host ended unexpectedly the last time; its log may tell why.", isJson);
      outcome = runThroughHost(host.socket, words, print);
      ::close(host.socket);
      // A host may be leaving just as it is called. Nothing has been run then, and the next one may be asked.
      if (outcome.kind != RunOutcome::Kind::notStarted)
        break;
    }
    return tell(outcome, isJson);
  } catch (const OutputLost& lost) {
    if (lost.errorNumber == EPIPE)
      endByBrokenPipe();
    return fail("OutputFailure", "notWritten", notWritten(lost.errorNumber), isJson);
  }
}

int start(std::span<char*> arguments) {
  occupyClosedStreams();
  const std::string program = programPath();
  if (arguments.size() > 1 && std::string_view(arguments[1]) == "run") {
    const std::vector<std::string> words(arguments.begin() + 2, arguments.end());
    try {
      if (isForHost(words))
        return run(program, words);
    } catch (const HostUnavailable& reason) {
      say(std::string(reason.what()) + ". The action runs without the background host.");
    }
  }
  becomeHostProgram(hostProgram(program), arguments.data());
}

} // namespace
} // namespace tabwright::client

int main(int argumentCount, char** arguments) {
  try {
    return tabwright::client::start({arguments, static_cast<std::size_t>(argumentCount)});
  } catch (const std::exception& error) {
    tabwright::client::say(std::string(error.what()) + ".");
    return EXIT_FAILURE;
  }
}
