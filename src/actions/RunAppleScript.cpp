// Runs AppleScript of the user's own where an action's lines stand: inside of the block that speaks to the browser,
// with the runtime library at hand. What the lines leave in RETURN_VALUE is the result, as JSON.
#include "actions/ActionList.h"
#include "actions/ScriptAction.h"
#include "actions/SharedParameters.h"
#include "platform/JSONReader.h"

#include <algorithm>

namespace tabwright::actions {

struct AppleScriptPlaygroundData {
  std::string returnValue; ///< a JSON text

  static AppleScriptPlaygroundData fromJSON(const platform::JSONReader& json) {
    return {.returnValue = json.require<std::string>("returnValue")};
  }
};

class RunAppleScript final : public ScriptAction<AppleScriptPlaygroundData, std::string> {
  Parameter<engine::TargetContext> targetContext{*this, shared::targetContext(services())};
  Parameter<std::string> script{
      *this,
      {.name = "script", .textInput = shared::literalInput(), .example = "set RETURN_VALUE to name of front window"}};

public:
  explicit RunAppleScript(const ActionServices& services)
      : ScriptAction(services, "RunAppleScript", intents::tables::browsers, {.destroys = true}) {
    registerRuns(Registration::beforePreconditions);
    aimAt(targetContext);
    summarise({{.sentence = {&script, &targetContext}}});
  }

private:
  [[nodiscard]] std::string scriptBody() const override {
    // The user's lines go in as they are: they are the program.
    return "set RETURN_VALUE to {}\n" + *script + "\nreturn my success({returnValue: my jsonStringify(RETURN_VALUE)})";
  }

  // One line of ours stands before the user's, and one behind.
  [[nodiscard]] std::optional<std::size_t> userLine(std::size_t line) const override {
    const auto lines = static_cast<std::size_t>(std::ranges::count(*script, '\n')) + 1;
    return line >= 2 && line <= lines + 1 ? std::optional(line - 1) : std::nullopt;
  }

  [[nodiscard]] std::string result(AppleScriptPlaygroundData answer,
                                   const engine::TargetContext& /*browser*/) const override {
    return answer.returnValue;
  }
};

template std::unique_ptr<ActionFrame> makeAction<RunAppleScript>(const ActionServices&);

} // namespace tabwright::actions
