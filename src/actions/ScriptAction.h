#pragma once

#include "actions/ActionFrame.h"
#include "engine/Scriptacular.h"
#include "engine/TargetContext.h"
#include "intents/UsageError.h"
#include "intents/ValueTraits.h"
#include "platform/Task.h"

#include <fmt/core.h>

#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace tabwright::actions {

/// An action whose work is one script in a browser: most are.
///
/// `Answer` is what the script's result is decoded into (any type that `platform::JSONReader` reads), `Result` the
/// action's value (anything with `intents::ValueTraits`; `Nothing` for none). The action says how its script reads and
/// how the answer becomes the value; a false result counts as no success and is not followed by a pause.
template <class Answer, class Result>
class ScriptAction : public ActionFrame {
public:
  [[nodiscard]] intents::ValueType resultType() const override { return intents::ValueTraits<Result>::type(); }

protected:
  using ActionFrame::ActionFrame;

  /// The action's own lines, run inside of the block that speaks to the browser. Values from users go into literals
  /// through `engine::escapeForLiteral`.
  [[nodiscard]] virtual std::string scriptBody() const = 0;
  /// Named values that the lines use; they need no escaping.
  [[nodiscard]] virtual engine::Scriptacular::Arguments scriptArguments() const { return {}; }
  /// The application that the lines speak to: the browser for all actions but one.
  [[nodiscard]] virtual engine::TellSystemEvents tellSystemEvents() const { return engine::TellSystemEvents::no; }
  /// The action's value. `browser` is the one that answered, never the frontmost entry. May throw.
  [[nodiscard]] virtual Result result(Answer answer, const engine::TargetContext& browser) const = 0;

  /// The line of the user's own text that a line of `scriptBody` is, both from 1; nothing for the action's own lines.
  [[nodiscard]] virtual std::optional<std::size_t> userLine(std::size_t /*line*/) const { return std::nullopt; }
  /// A notice for the user beside a success, or the cause of a failure of `result`: none for most.
  [[nodiscard]] virtual std::optional<platform::Notice> noticeOf(const Answer& /*answer*/) const {
    return std::nullopt;
  }

  /// Runs the script and makes the value of its answer. Notices reach the host after a success only; beneath a failure
  /// the last of them is the cause: what the browser said goes before the action's own.
  platform::Task<Outcome> run(intents::ActionHost& host) override {
    engine::Scriptacular scriptacular = makeScriptacular();
    Answer answer = co_await runScript(scriptacular);
    std::vector<platform::Notice> notices = scriptacular.notices();
    if (std::optional<platform::Notice> own = noticeOf(answer))
      notices.insert(notices.begin(), std::move(*own));
    const Result value = resultOf(std::move(answer), scriptacular.targetContext(), notices);
    for (const platform::Notice& notice : notices)
      host.notice(notice);
    Outcome outcome{.value = intents::ValueTraits<Result>::toJson(value)};
    if constexpr (std::is_same_v<Result, bool>)
      outcome.success = value ? Outcome::Success::yes : Outcome::Success::no;
    co_return outcome;
  }

  /// Throws `UsageError` for the frontmost browser, which is known only when the program runs.
  [[nodiscard]] std::string buildScriptText() const override {
    if (target() == engine::frontmostTargetContext())
      throw intents::UsageError("Which browser is frontmost is found out only when " + name() +
                                " runs, and its script depends on the browser: name one for targetContext, such as "
                                "chromium.");
    return makeScriptacular().buildScriptText();
  }

private:
  /// An action that fails by what the script has answered says what was noticed last.
  [[nodiscard]] Result resultOf(Answer answer, const engine::TargetContext& browser,
                                const std::vector<platform::Notice>& notices) const {
    try {
      return result(std::move(answer), browser);
    } catch (platform::Failure& failure) {
      if (!failure.cause() && !notices.empty())
        failure.setCause(notices.back());
      throw;
    }
  }

  /// Runs it, and tells a failure by the line of the user's own text, where it has one.
  platform::Task<Answer> runScript(engine::Scriptacular& scriptacular) {
    try {
      co_return co_await scriptacular.run<Answer>();
    } catch (platform::Failure& failure) {
      if (std::optional<platform::Notice> cause = failure.cause(); cause && cause->line) {
        cause->line = userLine(*cause->line);
        failure.setCause(std::move(cause));
      }
      if (!failure.cause())
        failure.setCause(goneCause(failure.identity()));
      throw;
    }
  }

  /// The catalogue's sentence of a tab or window that is gone names neither it nor the way on.
  [[nodiscard]] std::optional<platform::Notice> goneCause(const platform::FailureIdentity& identity) const {
    const bool isTab = identity.caseName == "tabNotFound";
    const std::string reference = this->aimedReference();
    if (reference.empty() || (!isTab && identity.caseName != "windowNotFound"))
      return std::nullopt;
    return platform::Notice{identity,
                            fmt::format("No {} {} is open. {} lists those that are.", isTab ? "tab" : "window",
                                        reference, isTab ? "GetListOfTabs" : "GetListOfWindows")};
  }

  /// One for each run, made when the parameters are settled.
  [[nodiscard]] engine::Scriptacular makeScriptacular() const {
    return {services().scripts, scriptBody(), scriptArguments(), target(), tellSystemEvents()};
  }
};

} // namespace tabwright::actions
