#pragma once

#include "crashreport/CrashReporter.h"
#include "engine/BrowserVersionStore.h"
#include "engine/FrontmostResolver.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/UserAppleScriptTask.h"

namespace tabwright::engine {

/// The services of the world that running a script needs. The program makes one; everything it names outlives every
/// `Scriptacular`, and may be used from several threads at once.
struct ScriptacularServices {
  /// Compiles and runs what `files` has written.
  platform::UserAppleScriptTasks& tasks;
  /// Holds each program as a file while it runs.
  platform::FileManager& files;
  /// Names the scripts' files, and times the pauses of actions.
  platform::Clock& clock;
  /// Hears of programs' files that can't be written, loaded or removed.
  crashreport::CrashReporter& crashReporter;
  /// Null: a run against the frontmost browser ends in `AppleScriptRuntimeError::frontAppIsNotABrowser`.
  FrontmostResolver* frontmostResolver = nullptr;
  /// Null: versions are not recorded.
  BrowserVersionStore* browserVersions = nullptr;
};

} // namespace tabwright::engine
