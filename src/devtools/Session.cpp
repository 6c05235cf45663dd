// The session's state says why the page would not answer now. Events change it on the connection's thread and fail the
// calls under way; a new call looks at it under the same mutex that it is registered under, so none slips between.
// The state is shared with the listener, which holds it weakly, so events need no session that lives.
#include "devtools/Session.h"

#include "devtools/PageProgress.h"
#include "devtools/Waiting.h"
#include "platform/Mutex.h"

#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <vector>

namespace tabwright::devtools {

using platform::JSONReader;

namespace {

/// The JSON value of the Runtime.RemoteObject in an answer that was asked for by value.
boost::json::value valueIn(boost::json::value& answer) {
  const auto remote = JSONReader(answer).require<JSONReader>("result");
  const auto type = remote.find<std::string>("type");
  if (type == "function" || type == "symbol")
    return nullptr;
  // The protocol gives minus zero, NaN, infinities and big integers as a text; only the first has a JSON number.
  if (remote.find<std::string>("unserializableValue") == "-0")
    return 0;
  return remote.object().contains("value") ? std::move(answer.at("result").at("value")) : boost::json::value(nullptr);
}

std::string thrownText(const JSONReader& details) {
  const auto thrown = details.find<JSONReader>("exception");
  const auto description = thrown ? thrown->find<std::string>("description") : std::nullopt;
  return description && !description->empty() ? *description : details.require<std::string>("text");
}

// A document may be held up by a script of its own that never comes.
constexpr std::chrono::seconds patienceWithParsing(1);
// A navigation that neither comes to an end nor keeps the page from answering may be none.
constexpr std::chrono::seconds patienceWithEnds(1);
// A page may go on from one address to the next for ever.
constexpr int mostProbes = 8;
// 1 for a document that is still being parsed, 2 more for one of the browser's in place of a page that wasn't loaded.
constexpr std::string_view probeCode =
    "(document.readyState === 'loading' ? 1 : 0) + (location.protocol === 'chrome-error:' ? 2 : 0)";

/// Codes of the protocol's errors (JSON-RPC 2.0, and the server's own).
constexpr int serverError = -32000;
constexpr int sessionNotFound = -32001;

} // namespace

/// A call that the page is to answer, and what was known when it was sent.
struct Session::Probe {
  std::shared_ptr<PendingCall> call;
  std::uint64_t departures = 0;
};

struct Session::State {
  const std::string targetID;
  const std::string sessionID;
  const Kind kind;

  platform::Mutex mutex;
  bool isDetached GUARDED_BY(mutex) = false; // the browser has ended the session
  bool isGone GUARDED_BY(mutex) = false;
  bool isCrashed GUARDED_BY(mutex) = false;
  std::optional<std::string> dialog GUARDED_BY(mutex); // its text while one is open
  std::vector<std::weak_ptr<PendingCall>> pageCalls GUARDED_BY(mutex);
  std::string bindingName GUARDED_BY(mutex);
  std::function<void(const std::string&)> bindingListener GUARDED_BY(mutex);
  PageProgress progress GUARDED_BY(mutex);
  std::condition_variable_any progressed;
  std::optional<Probe> probe GUARDED_BY(mutex); // the last one that nobody has waited for
  std::chrono::steady_clock::time_point
      answeredAt GUARDED_BY(mutex); // when the page has last answered a probe or an evaluation

  State(std::string target, std::string session, Kind kindOfTarget)
      : targetID(std::move(target)), sessionID(std::move(session)), kind(kindOfTarget), progress(targetID) {}

  /// Why the page would not answer now.
  [[nodiscard]] std::optional<DevToolsFailure> obstacle() const REQUIRES(mutex) {
    if (isGone)
      return platform::failure(DevToolsFault::targetGone);
    if (isCrashed)
      return platform::failure(DevToolsFault::targetCrashed);
    if (dialog)
      return platform::failure(DevToolsFault::dialogOpen, *dialog);
    return std::nullopt;
  }

  [[nodiscard]] bool answersLately() const REQUIRES(mutex) {
    return std::chrono::steady_clock::now() - answeredAt < lately;
  }

  void failPageCalls() REQUIRES(mutex) {
    // Set by the event that led here, so there is always one.
    const std::optional<DevToolsFailure> why = obstacle();
    for (const std::weak_ptr<PendingCall>& call : pageCalls) {
      if (const std::shared_ptr<PendingCall> pending = call.lock())
        pending->fail(why->kind(), why->detail());
    }
    pageCalls.clear();
    progressed.notify_all();
  }

  void take(const Event& event) {
    platform::MutexLock lock(mutex);
    if (progress.take(event)) {
      progressed.notify_all();
    } else if (event.method == "Runtime.bindingCalled") {
      if (event.parameters.require<std::string>("name") != bindingName || !bindingListener)
        return;
      const auto listener = bindingListener;
      // The listener may make calls of this session, which take the same lock.
      lock.unlock();
      listener(event.parameters.require<std::string>("payload"));
    } else if (event.method == "Page.javascriptDialogOpening") {
      dialog = event.parameters.require<std::string>("message");
      failPageCalls();
    } else if (event.method == "Page.javascriptDialogClosed") {
      dialog.reset();
    } else if (event.method == "Inspector.targetCrashed") {
      // A stopped worker has lost all that it knew, even if the browser starts it again under the same session.
      (kind == Kind::worker ? isGone : isCrashed) = true;
      dialog.reset();
      failPageCalls();
    } else if (event.method == "Inspector.targetReloadedAfterCrash") {
      isCrashed = false;
    } else if (event.method == "Target.detachedFromTarget") {
      isDetached = true;
      isGone = true;
      failPageCalls();
    }
  }
};

std::shared_ptr<Session> Session::attach(std::shared_ptr<Connection> connection, const std::string& targetID, Kind kind,
                                         const platform::CallLimits& limits) {
  const boost::json::value reply =
      connection->call("Target.attachToTarget", {{"targetId", targetID}, {"flatten", true}}, {}, limits);
  const auto state = std::make_shared<State>(targetID, JSONReader(reply).require<std::string>("sessionId"), kind);
  // Weak, since the connection outlives its sessions: an event that is under way when the session goes finds nothing.
  connection->listen(state->sessionID, [weak = std::weak_ptr(state)](const Event& event) {
    if (const std::shared_ptr<State> still = weak.lock())
      still->take(event);
  });
  std::shared_ptr<Session> session(new Session(std::move(connection), state));
  if (kind == Kind::page) {
    // Nobody waits for these: their answers come before those of the calls that follow. The first makes a crash known
    // that has already happened, the second makes dialogs known; in a page with an open dialog it isn't answered.
    session->send("Inspector.enable", {}, AnsweredBy::browser);
    session->send("Page.enable", {}, AnsweredBy::browser);
    session->probe();
  }
  return session;
}

Session::Session(std::shared_ptr<Connection> connection, std::shared_ptr<State> state)
    : connection_(std::move(connection)), state_(std::move(state)) {}

Session::~Session() {
  connection_->stopListening(state_->sessionID);
  const platform::MutexLock lock(state_->mutex);
  if (!state_->isDetached)
    connection_->send("Target.detachFromTarget", {{"sessionId", state_->sessionID}});
}

std::shared_ptr<PendingCall> Session::send(std::string method, boost::json::object parameters, AnsweredBy answeredBy) {
  const platform::MutexLock lock(state_->mutex);
  if (state_->isGone)
    throw platform::failure(DevToolsFault::targetGone);
  if (answeredBy == AnsweredBy::page) {
    if (const std::optional<DevToolsFailure> why = state_->obstacle())
      throw *why;
  }
  std::shared_ptr<PendingCall> pending = connection_->send(std::move(method), std::move(parameters), state_->sessionID);
  if (answeredBy == AnsweredBy::page) {
    std::erase_if(state_->pageCalls, [](const std::weak_ptr<PendingCall>& call) { return call.expired(); });
    state_->pageCalls.push_back(pending);
  }
  return pending;
}

boost::json::value Session::call(std::string method, boost::json::object parameters, AnsweredBy answeredBy,
                                 const platform::CallLimits& limits) {
  // Kept for the sentence of a refusal, as the method is moved away.
  const std::string name = method;
  PendingCall::Answer answer = send(std::move(method), std::move(parameters), answeredBy)
                                   ->await(platform::boundedBy(limits, connection_->bounds().call));
  if (answer)
    return std::move(*answer);
  if (answer.error().code == sessionNotFound)
    throw platform::failure(DevToolsFault::targetGone);
  throw platform::failure(DevToolsFault::refused, fmt::format("{}: {}", name, answer.error().message));
}

Evaluation Session::evaluate(const std::string& javascript, const platform::CallLimits& limits) {
  const platform::CallLimits bounded = platform::boundedBy(limits, connection_->bounds().call);
  PendingCall::Answer answer =
      send("Runtime.evaluate", {{"expression", javascript}, {"returnByValue", true}, {"awaitPromise", true}},
           AnsweredBy::page)
          ->await(bounded);
  if (answer) {
    {
      const platform::MutexLock lock(state_->mutex);
      state_->answeredAt = std::chrono::steady_clock::now();
    }
    if (const auto thrown = JSONReader(*answer).find<JSONReader>("exceptionDetails"))
      return {nullptr, thrownText(*thrown)};
    return {valueIn(*answer), std::nullopt};
  }

  const ProtocolError& error = answer.error();
  if (error.code == sessionNotFound)
    throw platform::failure(DevToolsFault::targetGone);
  if (error.code != serverError)
    throw platform::failure(DevToolsFault::refused, fmt::format("Runtime.evaluate: {}", error.message));
  // The browser says the same of a page that went elsewhere and of one that was closed.
  if (error.message.find("navigated or closed") != std::string::npos) {
    // A target that is still listed went elsewhere: that is an answer, and only its value is lost.
    const PendingCall::Answer still =
        connection_->send("Target.getTargetInfo", {{"targetId", state_->targetID}})->await(bounded);
    if (!still)
      throw platform::failure(DevToolsFault::targetGone);
  }
  return {nullptr, error.message};
}

// --------------------------------------------------------------------------------------------------------- navigations
// The browser guarantees, as measured: the events of a navigation that code brings about come before the answer to the
// next call that the page answers. Once the browser has begun one it holds calls back until the page is there or the
// navigation is dropped; but while a page may still refuse to leave it answers for itself, so the events count too.

void Session::probe() {
  try {
    sendProbe();
  } catch (const DevToolsFailure&) { // it would not answer: whoever calls it next is told why
  }
}

Session::Probe Session::sendProbe() {
  Probe probe;
  {
    const platform::MutexLock lock(state_->mutex);
    probe.departures = state_->progress.departures();
  }
  probe.call = send("Runtime.evaluate", {{"expression", probeCode}, {"returnByValue", true}}, AnsweredBy::page);
  const platform::MutexLock lock(state_->mutex);
  state_->probe = probe;
  return probe;
}

/// The last probe where nobody has waited for it, else a new one.
Session::Probe Session::requireProbe() {
  {
    const platform::MutexLock lock(state_->mutex);
    if (const std::optional<DevToolsFailure> why = state_->obstacle())
      throw *why;
    if (state_->probe && !state_->probe->call->hasFailed())
      return *state_->probe;
  }
  return sendProbe();
}

/// Waits for what the page says, and then for the end of a navigation that had begun by then.
void Session::take(const Probe& probe, const platform::CallLimits& limits) {
  probe.call->awaitEnd(limits);
  const std::optional<PendingCall::Answer> answer = probe.call->answer(); // throws when the connection is lost
  platform::MutexLock lock(state_->mutex);
  // Another thread may have sent a later probe while this one waited: that one stays to be waited for.
  if (state_->probe && state_->probe->call == probe.call)
    state_->probe.reset();
  if (!answer || !*answer) // a dialog, or the page went elsewhere just then
    return;
  state_->answeredAt = std::max(state_->answeredAt, probe.call->answeredAt());
  state_->progress.answered(probe.departures);
  const auto facts = JSONReader(**answer).require<JSONReader>("result").find<std::int64_t>("value").value_or(0);
  // Once an event has told of a document, the answer may be that of the one before it.
  if (!state_->progress.knowsDocument())
    state_->progress.found(facts % 2 == 0, facts >= 2);
  limits.within(patienceWithEnds).wait(state_->progressed, lock, [this]() REQUIRES(state_->mutex) {
    return !state_->progress.isUnderWay() || state_->obstacle();
  });
}

void Session::settle(Answer answer, const platform::CallLimits& callLimits) {
  const platform::CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  for (int probes = 0; probes < mostProbes; ++probes) {
    {
      const platform::MutexLock lock(state_->mutex);
      if (!state_->probe && state_->progress.isSettled() && (answer == Answer::ever || state_->answersLately()))
        break;
    }
    take(requireProbe(), limits);
  }
  platform::MutexLock lock(state_->mutex);
  const bool isThere =
      limits.within(patienceWithParsing).wait(state_->progressed, lock, [this]() REQUIRES(state_->mutex) {
        return state_->progress.isParsed() || state_->obstacle();
      });
  if (!isThere && !limits.hasPassed())
    state_->progress.countAsParsed(); // else each call would wait anew for a page that comes in drops
  if (limits.stop.stop_requested())
    throw platform::failure(DevToolsFault::stopped);
}

void Session::depart() {
  const platform::MutexLock lock(state_->mutex);
  state_->progress.depart();
  state_->isCrashed = false; // the command brings the page's process back; where it can't, that is reported anew
}

bool Session::isLeaving() const {
  const platform::MutexLock lock(state_->mutex);
  return !state_->progress.isSettled() || !state_->progress.isParsed();
}

bool Session::answersLately() const {
  const platform::MutexLock lock(state_->mutex);
  return state_->answersLately();
}

bool Session::isErrorPage() const {
  const platform::MutexLock lock(state_->mutex);
  return state_->progress.isErrorPage();
}

std::optional<std::string> Session::destination() const {
  const platform::MutexLock lock(state_->mutex);
  return state_->progress.isUnderWay() && !state_->obstacle() ? std::optional(state_->progress.destination())
                                                              : std::nullopt;
}

std::uint64_t Session::departures() const {
  const platform::MutexLock lock(state_->mutex);
  return state_->progress.departures();
}

void Session::bind(const std::string& name, std::function<void(const std::string&)> listener) {
  {
    const platform::MutexLock lock(state_->mutex);
    state_->bindingName = name;
    state_->bindingListener = std::move(listener);
  }
  send("Runtime.addBinding", {{"name", name}}, AnsweredBy::browser);
}

bool Session::isAttached() const {
  const platform::MutexLock lock(state_->mutex);
  return !state_->isGone && connection_->isOpen();
}

const std::string& Session::targetID() const {
  return state_->targetID;
}

} // namespace tabwright::devtools
