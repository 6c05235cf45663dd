#pragma once

#include "applescript/Interpreter.h"
#include "applescript/ScriptError.h"
#include "scripting/ScriptingDirectory.h"
#include "scripting/foundation/FoundationBridge.h"
#include "support/ModelBrowser.h"
#include "support/ModelDesktop.h"

#include <fmt/core.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// Scripts against models: `browser` plays Chromium, Google Chrome and Safari alike, `desktop` the desktop.
///
///     bench.browser->addWindow({{"A", "https://a.test/"}});
///     bench.chromium("URL of tab 1 of window 1")                         // "\"https://a.test/\""
struct ScriptBench {
  std::shared_ptr<ModelBrowser> browser = std::make_shared<ModelBrowser>();
  std::shared_ptr<ModelDesktop> desktop = std::make_shared<ModelDesktop>();
  std::vector<std::string> launched;
  int ownActivations = 0;
  scripting::ScriptingDirectory directory{services()};
  scripting::FoundationBridge foundation{[] { return 1'700'000'000.0; }};
  applescript::Interpreter interpreter{surroundings()};

  /// The result of a script in source form, or "error NUMBER: MESSAGE".
  std::string run(const std::string& source) {
    try {
      const auto script = interpreter.compile(source);
      return applescript::sourceForm(interpreter.run(*script));
    } catch (const applescript::ScriptError& error) {
      return fmt::format("error {}: {}", error.number(), error.message());
    }
  }

  std::string chromium(const std::string& lines) { return tell("Chromium", lines); }
  std::string safari(const std::string& lines) { return tell("Safari", lines); }
  std::string systemEvents(const std::string& lines) { return tell("System Events", lines); }
  std::string foundationResult(const std::string& expression) {
    return run("use framework \"Foundation\"\nproperty CA : current application\n" + expression);
  }

  /// Result of lines inside a `tell`, "of application …" left out.
  std::string tell(const std::string& application, const std::string& lines) {
    std::string result = run(fmt::format("tell application \"{}\"\n{}\nend tell", application, lines));
    const std::string tail = fmt::format(" of application \"{}\"", application);
    for (std::size_t at = result.find(tail); at != std::string::npos; at = result.find(tail, at))
      result.erase(at, tail.size());
    return result;
  }

private:
  scripting::ScriptingServices services() {
    scripting::ScriptingServices services;
    services.makeDriver = [this](const platform::BrowserFacts& facts,
                                 const std::string& /*profile*/) -> std::shared_ptr<scripting::BrowserDriver> {
      const bool isInstalled = facts.shortName == "chromium" || facts.shortName == "safari";
      return isInstalled ? browser : nullptr;
    };
    services.launch = [this](const platform::BrowserFacts& facts) { launched.emplace_back(facts.shortName); };
    services.desktop = desktop;
    services.activateSelf = [this] { ++ownActivations; };
    return services;
  }

  applescript::Surroundings surroundings() {
    applescript::Surroundings surroundings;
    surroundings.directory = &directory;
    surroundings.objectiveC = &foundation;
    surroundings.sleep = [](std::chrono::nanoseconds, std::stop_token) {};
    return surroundings;
  }
};

} // namespace tabwright::testsupport
