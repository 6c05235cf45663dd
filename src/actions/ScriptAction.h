#pragma once

#include "actions/ActionFrame.h"
#include "engine/Scriptacular.h"
#include "engine/TargetContext.h"
#include "intents/UsageError.h"
#include "intents/ValueTraits.h"
#include "platform/Task.h"

#include <string>
#include <type_traits>
#include <utility>

namespace tabwright::actions {

/// An action whose work is one script in a browser: most are.
///
/// `Answer` is what the script's result is decoded into (anything with an `engine::JSONDecoding`), `Result` the
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
  [[nodiscard]] virtual engine::TellSystemEvents tellSystemEvents() const { return engine::TellSystemEvents::no; }
  /// The action's value. `browser` is the one that answered, never the frontmost entry. May throw.
  [[nodiscard]] virtual Result result(Answer answer, const engine::TargetContext& browser) const = 0;

  platform::Task<Outcome> run(intents::ActionHost& /*host*/) override {
    engine::Scriptacular scriptacular = makeScriptacular();
    Answer answer = co_await scriptacular.run<Answer>();
    const Result value = result(std::move(answer), scriptacular.targetContext());
    Outcome outcome{.value = intents::ValueTraits<Result>::toJson(value)};
    if constexpr (std::is_same_v<Result, bool>)
      outcome.success = value ? Outcome::Success::yes : Outcome::Success::no;
    co_return outcome;
  }

  [[nodiscard]] std::string buildScriptText() const override {
    if (target() == engine::frontmostTargetContext())
      throw intents::UsageError("Which browser is frontmost is found out only when " + name() +
                                " runs, and its script depends on the browser: name one for targetContext, such as "
                                "chromium.");
    return makeScriptacular().buildScriptText();
  }

private:
  [[nodiscard]] engine::Scriptacular makeScriptacular() const {
    return {services().scripts, scriptBody(), scriptArguments(), target(), tellSystemEvents()};
  }
};

} // namespace tabwright::actions
