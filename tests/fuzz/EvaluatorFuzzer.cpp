// Runs any text as a script, with tight limits, on a machine without applications or bridge. Whatever it says, it must
// end in a value or a ScriptError; its value must have a source form.
#include "applescript/EmptyDirectory.h"
#include "applescript/Interpreter.h"

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tabwright::applescript;
  static EmptyDirectory directory;
  static Interpreter interpreter = [] {
    Surroundings surroundings;
    surroundings.directory = &directory;
    surroundings.sleep = [](std::chrono::nanoseconds, std::stop_token) {};
    surroundings.now = [] { return 791546400.0; };
    surroundings.random = [] { return 0.5; };
    RunLimits limits;
    limits.handlerDepth = 100;
    limits.valueBytes = 1 << 16;
    limits.steps = 2000;
    return Interpreter(surroundings, limits);
  }();
  try {
    const auto script = interpreter.compile(std::string(reinterpret_cast<const char*>(data), size));
    (void)sourceForm(interpreter.run(*script));
  } catch (const ScriptError& error) {
    (void)error.errorDescription();
  }
  return 0;
}
