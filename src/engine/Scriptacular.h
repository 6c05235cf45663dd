#pragma once

#include "engine/JSONDecoding.h"
#include "engine/ScriptacularServices.h"
#include "engine/TargetContext.h"
#include "engine/TemporaryScript.h"
#include "platform/Task.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::engine {

/// The handler of every generated program that its event calls.
inline constexpr std::string_view mainHandlerName = "runWithVariables";

/// Whom the main `tell` block of a script speaks to: the browser, or System Events in its place.
enum class TellSystemEvents : bool { no, yes };

/// One run of one script: assembles the program around an action's own lines, runs it, and decodes its result.
///
///     Scriptacular scriptacular(services, "return success(my getListOfTabs())", {}, target, TellSystemEvents::no);
///     auto tabs = co_await scriptacular.run<std::vector<BrowserTabData>>();
///
/// It serves one run and one coroutine at a time. The result type is any that `platform::JSONReader` reads.
///
/// Failures of a run, all thrown: `AppleScriptRuntimeError` (the script ended in `failure(n)`), `ScriptacularError`
/// (the script couldn't be run, or its result has the wrong shape), `StringError::unableToDecodeJSON`, and any failure
/// of the script itself that none of these fits, unchanged. What really happened is the failure's cause. The temporary
/// file is gone in every case.
class Scriptacular {
public:
  using Arguments = std::map<std::string, std::string>;

  /// `args` are named values for the script: the keys become the parameter names of its main handler and must be
  /// AppleScript identifiers; the values travel beside the text and may hold anything. `targetContext` must have an id.
  Scriptacular(const ScriptacularServices& services, std::string appleScript, Arguments args,
               TargetContext targetContext, TellSystemEvents tellSystemEvents);

  /// One that runs complete programs only (the setup's and the frontmost lookup): no script of its own, the frontmost
  /// browser as its target, `isOnboarding` true.
  [[nodiscard]] static Scriptacular forOnboarding(const ScriptacularServices& services);

  /// The action's own lines, the body of the main `tell` block.
  const std::string& appleScript() const { return appleScript_; }
  /// The browser aimed at; the actual one once `run` has resolved the frontmost.
  const TargetContext& targetContext() const { return targetContext_; }
  TellSystemEvents tellSystemEvents() const { return tellSystemEvents_; }
  /// True while the setup or the frontmost lookup run a script: no browser version is recorded then.
  bool isOnboarding() const { return isOnboarding_; }
  /// Notices beside the results of the runs so far.
  const std::vector<platform::Notice>& notices() const { return notices_; }

  /// The finished program. Doesn't depend on anything but the fields above and has no effect but a line in the log.
  [[nodiscard]] std::string buildScriptText() const;

  /// Makes `targetContext` the actual browser if it is the frontmost one. `run` does this by itself.
  platform::Task<void> resolveFrontmostBrowser();

  /// Resolves the target, assembles, runs, decodes. The line in a failure's cause is one of `appleScript()`, and there
  /// is none for what went wrong in the layers around it.
  template <class T>
  platform::Task<T> run() {
    co_await resolveFrontmostBrowser();
    std::string text = buildScriptText();
    try {
      co_return co_await runScriptText<T>(text);
    } catch (platform::Failure& failure) {
      placeInOwnLines(failure, text);
      throw;
    }
  }

  /// Runs a complete program as it stands.
  template <class T>
  platform::Task<T> runScriptText(std::string text) {
    const TemporaryScript script = TemporaryScript::write(text, services_);
    co_return co_await runTempScript<T>(script.file());
  }

  /// Runs one script file, which outlives the run.
  template <class T>
  platform::Task<T> runTempScript(const platform::WrittenFile& script) {
    const std::string payload = co_await payloadOfScript(script);
    co_return decodeJSON<T>(payload);
  }

private:
  platform::Task<std::string> payloadOfScript(const platform::WrittenFile& script);
  void placeInOwnLines(platform::Failure& failure, std::string_view text) const;

  ScriptacularServices services_;
  std::string appleScript_;
  Arguments args_;
  TargetContext targetContext_;
  TellSystemEvents tellSystemEvents_;
  bool isOnboarding_ = false;
  std::vector<platform::Notice> notices_;
};

} // namespace tabwright::engine
