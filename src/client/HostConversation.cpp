// One request goes out; then lines come in until its answer is among them. Everything happens in this one thread: while
// the user is asked nothing else is waited for. Only the time until the action begins is bounded, and only up to there
// may a lost connection be tried again.
#include "client/HostConversation.h"

#include "client/CallerSide.h"
#include "client/HostProtocol.h"
#include "client/WaitingLine.h"
#include "session/UTF8.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

namespace tabwright::client {
namespace {

namespace json = boost::json;

using Clock = WaitingLine::Clock;

constexpr std::chrono::seconds answerPatience{30};
constexpr int requestID = 1;

/// The lines that come from a socket.
class Lines {
public:
  enum class Ended { closed, timedOut };

  explicit Lines(int socket) : socket_(socket) {}

  /// The next line; nothing at the end, or when none has come by the deadline.
  /// Meanwhile `waiting`, if any, shows itself when it is due.
  std::optional<std::string> next(std::optional<Clock::time_point> deadline, WaitingLine* waiting) {
    for (;;) {
      if (const std::size_t end = text_.find('\n', searched_); end != std::string::npos) {
        std::string line = text_.substr(0, end);
        text_.erase(0, end + 1);
        searched_ = 0;
        return line;
      }
      // A long line comes in many pieces: none of them is searched twice.
      searched_ = text_.size();
      if (!receive(deadline, waiting))
        return std::nullopt;
    }
  }
  [[nodiscard]] Ended ended() const { return ended_; }

private:
  bool receive(std::optional<Clock::time_point> deadline, WaitingLine* waiting) {
    static char buffer[65536];
    // The wait is cut in two, by the moment when the line is due.
    if (waiting && !waiting->isShown() && !isReadable(Clock::now() + waiting->left()))
      waiting->showIfDue();
    if (deadline && !isReadable(*deadline)) {
      ended_ = Ended::timedOut;
      return false;
    }
    for (;;) {
      const ssize_t count = ::recv(socket_, buffer, sizeof buffer, 0);
      if (count < 0 && errno == EINTR)
        continue;
      if (count <= 0)
        return false;
      text_.append(buffer, static_cast<std::size_t>(count));
      return true;
    }
  }

  bool isReadable(Clock::time_point deadline) {
    for (;;) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
      pollfd poll{.fd = socket_, .events = POLLIN, .revents = 0};
      const int ready = ::poll(&poll, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
      if (ready >= 0 || errno != EINTR)
        return ready != 0;
    }
  }

  const int socket_;
  std::string text_;
  std::size_t searched_ = 0; ///< there is no line feed before
  Ended ended_ = Ended::closed;
};

/// False when the host has gone away or takes nothing.
bool send(int socket, const json::object& message) {
  const std::string line = json::serialize(message) + "\n";
  for (std::string_view rest = line; !rest.empty();) {
    const ssize_t count = ::send(socket, rest.data(), rest.size(), MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR)
      continue;
    if (count < 0)
      return false;
    rest.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

json::object runRequest(const std::vector<std::string>& words) {
  char directory[PATH_MAX];
  const TerminalFacts terminal = terminalFacts();
  json::object parameters{
      {"version", TABWRIGHT_VERSION},
      {"arguments", json::array(words.begin(), words.end())},
      // JSON can't carry a path that is no UTF-8.
      {"directory", ::getcwd(directory, sizeof directory) && session::isUTF8(directory) ? directory : "/"},
      {"terminal", {{"input", terminal.isInput}, {"output", terminal.isOutput}, {"width", terminal.width}}},
  };
  return {{"jsonrpc", "2.0"}, {"id", requestID}, {"method", protocol::run}, {"params", std::move(parameters)}};
}

std::string textOf(const json::object& object, std::string_view name) {
  const json::value* value = object.if_contains(name);
  return value && value->is_string() ? std::string(value->get_string()) : std::string();
}

json::value answerTo(const std::string& method, const json::object& params) {
  if (method == protocol::ask) {
    const std::optional<std::string> answer = askAtTerminal(textOf(params, "question"));
    // A line that can't be sent counts as none.
    if (answer && session::isUTF8(*answer))
      return {{"answer", *answer}};
    return {{"answer", nullptr}};
  }
  FileContent content = readContent(textOf(params, "file"));
  if (content.refused)
    return {{"operation", content.refused}, {"errorNumber", content.errorNumber}};
  return {{"content", content.content}};
}

json::object paramsOf(const json::object& message) {
  const json::value* params = message.if_contains("params");
  return params && params->is_object() ? params->get_object() : json::object();
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words)
    text += (text.empty() ? "" : " ") + word;
  return text;
}

bool answer(int socket, const json::object& request) {
  const std::string method = textOf(request, "method");
  json::object reply{{"jsonrpc", "2.0"}, {"id", request.at("id")}};
  if (method == protocol::ask || method == protocol::read) {
    reply["result"] = answerTo(method, paramsOf(request));
  } else {
    // “Method not found” of JSON-RPC: else the host would wait for an answer.
    reply["error"] = {{"code", -32601}, {"message", "There is no method " + method + "."}};
  }
  return send(socket, reply);
}

RunOutcome outcomeOf(const json::object& message) {
  RunOutcome outcome;
  const json::value* result = message.if_contains("result");
  const json::value* error = message.if_contains("error");
  if (result && result->is_object()) {
    const json::object& answer = result->get_object();
    const json::value* exitCode = answer.if_contains("exitCode");
    outcome.output = textOf(answer, "output");
    outcome.error = textOf(answer, "error");
    outcome.exitCode = exitCode && exitCode->is_int64() ? static_cast<int>(exitCode->get_int64()) : EXIT_FAILURE;
    return outcome;
  }
  outcome.kind = RunOutcome::Kind::refused;
  if (error && error->is_object()) {
    const json::value* code = error->get_object().if_contains("code");
    // The one error behind which another host is to be asked.
    if (code && code->is_int64() && code->get_int64() == protocol::leavingError)
      outcome.kind = RunOutcome::Kind::notStarted;
    outcome.error = textOf(error->get_object(), "message");
  }
  return outcome;
}

} // namespace

RunOutcome runThroughHost(int socket, const std::vector<std::string>& words, const Print& print) {
  bool hasStarted = false;
  std::unique_ptr<WaitingLine> waiting = waitingLineAtTerminal("the background host");
  const auto endedBy = [&](Lines::Ended ended) {
    RunOutcome outcome;
    outcome.kind = hasStarted                        ? RunOutcome::Kind::lost
                   : ended == Lines::Ended::timedOut ? RunOutcome::Kind::unresponsive
                                                     : RunOutcome::Kind::notStarted;
    return outcome;
  };

  // Nothing is run without a whole request, so another host may be asked.
  if (!send(socket, runRequest(words)))
    return endedBy(Lines::Ended::closed);
  Lines lines(socket);
  const auto deadline = Clock::now() + answerPatience;
  for (;;) {
    const std::optional<std::string> line =
        lines.next(hasStarted ? std::nullopt : std::optional(deadline), waiting.get());
    if (!line)
      return endedBy(lines.ended());
    boost::system::error_code error;
    const json::value message = json::parse(*line, error);
    const json::object* object = error ? nullptr : message.if_object();
    // Passed over, not refused: the answer may still come behind it.
    if (!object)
      continue;
    if (waiting)
      waiting->hold();
    if (!object->contains("method"))
      return outcomeOf(*object);
    const std::string method = textOf(*object, "method");
    if (method == protocol::started) {
      hasStarted = true;
      // No longer the host is waited for, but the action.
      waiting = waitingLineAtTerminal(joined(words));
    } else if (method == protocol::print) {
      const json::object params = paramsOf(*object);
      print(textOf(params, "output"), textOf(params, "error"));
    } else if (object->contains("id") && !answer(socket, *object)) {
      return endedBy(Lines::Ended::closed);
    }
    if (waiting)
      waiting->resume();
  }
}

} // namespace tabwright::client
