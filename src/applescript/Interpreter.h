#pragma once

#include "applescript/ScriptError.h"
#include "applescript/events/ScriptableApplication.h"
#include "applescript/syntax/Parser.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Value.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// What a running script needs of the world, all replaceable in tests.
struct Surroundings {
  ApplicationDirectory* directory = nullptr;    ///< required
  const ObjectiveCBridge* objectiveC = nullptr; ///< null: `use framework` finds no classes
  /// Bundle identifier and name that `current application` and `me`'s own application answer to.
  std::string ownName = "Tabwright";

  /// Waits, at most until a stop is requested. Default: real time.
  std::function<void(std::chrono::nanoseconds, std::stop_token)> sleep;
  /// Seconds since 2001-01-01 00:00:00 on the local wall clock. Default: the system's.
  std::function<double()> now;
  /// A number in [0, 1). Default: a generator seeded by the system.
  std::function<double()> random;
  /// Takes what the script's `log` writes. Default: drops it.
  std::function<void(std::string_view)> log;
};

/// Bounds of a run: beyond them the script ends with an error of its own, never with a crash.
struct RunLimits {
  std::size_t handlerDepth = 1000;   ///< error −2706
  std::size_t valueBytes = 1u << 28; ///< one text or list grown beyond this: error −108
  std::chrono::nanoseconds eventTimeout =
      std::chrono::seconds(120); ///< error −1712, unless `with timeout` says otherwise
  std::size_t steps = 0; ///< statements and expressions evaluated in all; beyond them −128. 0: as many as it takes
};

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
  struct State;
  std::shared_ptr<State> state_;
};

/// A value in source form, as a script editor shows a result: `{1, "a"}`, `{x:1}`, `window id 5 of application "X"`.
/// Terminologies of the applications in specifiers name classes and properties.
[[nodiscard]] std::string sourceForm(const Value& value);

} // namespace tabwright::applescript
