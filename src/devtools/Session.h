#pragma once

#include "devtools/Connection.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tabwright::devtools {

/// The outcome of evaluating JavaScript.
struct Evaluation {
  boost::json::value value;             ///< JSON null where the value is undefined, or none that JSON can say
  std::optional<std::string> exception; ///< why there is no value: what was thrown, or what kept the value from us
};

/// One target that we are attached to: a page of the browser, or a worker.
///
/// Calls that the page itself must answer (all that run JavaScript) fail at once when its process crashes, when it is
/// closed, and when it opens a dialog, since it answers nothing then. Calls that the browser's main process answers for
/// the page go through whatever the page does.
///
/// A dialog that was open before we attached can't be told from a page that is busy: such calls end by their deadline.
///
/// Safe to use from any thread. Dropping the last reference detaches.
class Session {
public:
  enum class Kind {
    page,  ///< has dialogs, and survives its process
    worker ///< has none, and is over when it is stopped
  };
  /// The side that answers a call: the page's own process, which may be busy, stopped by a dialog or gone, or the
  /// browser's main process, which goes on whatever the page does.
  enum class AnsweredBy { page, browser };

  /// Attaches to a target. Throws DevToolsFailure; `refused` when there is no such target.
  static std::shared_ptr<Session> attach(std::shared_ptr<Connection> connection, const std::string& targetID, Kind kind,
                                         const platform::CallLimits& limits);
  /// Detaches without waiting for the browser, unless the browser has ended the session itself.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Evaluates JavaScript in the target's global scope, awaiting a promise, and gets the value as JSON: functions,
  /// symbols and big integers give null, as do numbers that aren't finite and whatever is nested too deeply or in a
  /// circle. An exception is an ordinary answer, and so is that the page went to another address meanwhile.
  /// Throws DevToolsFailure: targetGone, targetCrashed, dialogOpen, lost, timedOut, stopped, refused.
  Evaluation evaluate(const std::string& javascript, const platform::CallLimits& limits);

  /// The answer of the page that is enough to go on.
  enum class Answer {
    lately, ///< one of this moment: a page that is frozen gets nothing that it would do when it goes on
    ever    ///< one since the last `probe`
  };
  /// Waits until the page is where its navigations lead, as far as they have begun by now: at a document that is parsed
  /// to its end, or at the one that it had, where the browser dropped them. A document that takes longer than a second
  /// to parse counts as there. Returns at once when nothing has begun and the page has answered.
  /// Throws DevToolsFailure, as above.
  void settle(Answer answer, const platform::CallLimits& limits);

  /// Asks the page for an answer that nobody waits for but the next `settle`, which needs none of its own then. After
  /// it the events tell of every navigation that code before it has brought about, be it a task later.
  void probe();

  /// A command of ours is going to make the page leave.
  void depart();
  /// True when `settle` would have a navigation to wait for, as far as is known.
  [[nodiscard]] bool isLeaving() const;
  /// True when the page has answered within the last moments (`lately`), so that it may be given a command at once.
  [[nodiscard]] bool answersLately() const;
  /// True when the page is the browser’s own, in place of one that could not be loaded; known after `settle`.
  [[nodiscard]] bool isErrorPage() const;
  /// The address of the navigation that has begun and not come to its end; known after `settle` or a call.
  [[nodiscard]] std::optional<std::string> destination() const;
  /// The number of times that the page was about to leave so far.
  [[nodiscard]] std::uint64_t departures() const;

  /// Calls a method of the protocol in this session; yields its result, an object. Throws DevToolsFailure, as above.
  boost::json::value call(std::string method, boost::json::object parameters, AnsweredBy answeredBy,
                          const platform::CallLimits& limits);

  /// Sends a call and returns at once. Throws DevToolsFailure where `call` would throw at once.
  std::shared_ptr<PendingCall> send(std::string method, boost::json::object parameters, AnsweredBy answeredBy);

  /// Has `listener` called whenever code in the target calls the global function `name`, which this adds to it. The
  /// listener is called on the connection's thread with that function's argument.
  /// A session has one binding: a second call replaces the first one's listener.
  void bind(const std::string& name, std::function<void(const std::string&)> listener);

  /// False once the target is gone, or its worker has been stopped, or the connection is lost: attach anew then.
  [[nodiscard]] bool isAttached() const;
  /// The id that it was attached by; the same for the session's whole life.
  [[nodiscard]] const std::string& targetID() const;

private:
  struct State;
  struct Probe;
  Probe sendProbe();
  Probe requireProbe();
  void take(const Probe& probe, const platform::CallLimits& limits);
  Session(std::shared_ptr<Connection> connection, std::shared_ptr<State> state);

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<State> state_;
};

} // namespace tabwright::devtools
