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

/// A script that has been parsed and resolved, with the values of its properties. The properties get their first values
/// when it is first run or called, and keep what a run leaves in them; when one of them fails, the next run begins with
/// them anew. One Script belongs to one thread at a time.
class Script;
/// Ends a Script for those to whom it is an incomplete type.
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
  /// Whatever `surroundings` points to must outlive the interpreter; functions that it leaves out get their defaults.
  /// The dictionaries of its directory must outlive the compiled scripts, too, which point to their rows.
  explicit Interpreter(Surroundings surroundings, RunLimits limits = {});
  ~Interpreter();

  /// Throws the first syntax error, a ScriptError of Stage::syntax with its range; text that isn't UTF-8 is one, too.
  /// `check` gives all of them, none for a script that compiles, and throws none.
  [[nodiscard]] CompiledScript compile(std::string source);
  [[nodiscard]] std::vector<ScriptError> check(std::string source) const;
  /// The script in the usual layout; throws as `compile` does.
  [[nodiscard]] std::string formatted(std::string source) const;

  /// Runs the `run` handler, explicit or implicit, with its arguments. The result is the value of the last statement or
  /// of a `return`, or `nothing`. References are looked through at every depth and object specifiers left as they are;
  /// a script object in the result is of use only while `script` lives. Throws ScriptError (Stage::execution), worded
  /// so that it may outlive the script. `notices` takes what applications have to tell beside their answers; null for
  /// nobody.
  Value run(Script& script, std::vector<Value> arguments = {}, std::stop_token stop = {},
            std::shared_ptr<platform::Notices> notices = {});

  /// Calls a handler by name (ignoring case) with positional arguments; error −1708 when neither the script nor a
  /// parent of it has one. Result, errors and `notices` are as those of `run`.
  Value call(Script& script, std::string_view handler, std::vector<Value> arguments = {}, std::stop_token stop = {},
             std::shared_ptr<platform::Notices> notices = {});

private:
  [[nodiscard]] std::unique_ptr<SyntaxTree> parsed(std::string source) const;

  struct State;
  std::shared_ptr<State> state_;
};

} // namespace tabwright::applescript
