#pragma once

#include "applescript/ScriptError.h"
#include "applescript/evaluate/Surroundings.h"
#include "applescript/syntax/Parser.h"
#include "applescript/values/SourceForm.h"
#include "applescript/values/Value.h"
#include "platform/Notices.h"

#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// A script that has been parsed and resolved, with the values of its properties. A run may change the properties;
/// one Script belongs to one thread at a time.
class Script;
struct ScriptDeleter {
  void operator()(Script* script) const;
};
using CompiledScript = std::unique_ptr<Script, ScriptDeleter>;

/// Compiles and runs scripts of the language.
///
///     Interpreter interpreter(surroundings);
///     auto script = interpreter.compile("on add(a, b)\nreturn a + b\nend add");
///     Value sum = interpreter.call(*script, "add", {1, 2});        // 3
///
/// Several threads may use one Interpreter, each with its own scripts. A run ends soon after its stop is requested,
/// wherever it is (in a loop, a delay, an event): error −128.
class Interpreter {
public:
  explicit Interpreter(Surroundings surroundings, RunLimits limits = {});
  ~Interpreter();

  /// Throws the first syntax error; `check` shows all of them.
  [[nodiscard]] CompiledScript compile(std::string source);
  [[nodiscard]] std::vector<ScriptError> check(std::string source) const;
  /// The script in the usual layout; throws as `compile` does.
  [[nodiscard]] std::string formatted(std::string source) const;

  /// Runs the `run` handler, explicit or implicit, with its arguments. The result is the value of the last statement,
  /// or `nothing`. References are looked through at every depth and object specifiers left as they are; a script object
  /// in the result is of use only while `script` lives. Throws ScriptError (Stage::execution). `notices` takes what
  /// applications have to tell beside their answers.
  Value run(Script& script, std::vector<Value> arguments = {}, std::stop_token stop = {},
            std::shared_ptr<platform::Notices> notices = {});

  /// Calls a handler by name (ignoring case) with positional arguments; error −1708 when the script has none.
  Value call(Script& script, std::string_view handler, std::vector<Value> arguments = {}, std::stop_token stop = {},
             std::shared_ptr<platform::Notices> notices = {});

private:
  [[nodiscard]] std::unique_ptr<SyntaxTree> parsed(std::string source) const;

  struct State;
  std::shared_ptr<State> state_;
};

} // namespace tabwright::applescript
