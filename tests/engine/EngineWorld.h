#pragma once

#include "engine/BrowserVersionStore.h"
#include "engine/Scriptacular.h"
#include "support/ManualClock.h"
#include "support/MemoryFileManager.h"
#include "support/ModelScriptTasks.h"
#include "support/RecordingCrashReporter.h"

#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

class RecordingVersionStore final : public engine::BrowserVersionStore {
public:
  std::vector<std::pair<std::string, std::string>> recorded;
  void setBrowserVersion(std::string_view id, std::string_view version) override { recorded.emplace_back(id, version); }
};

/// All that a Scriptacular needs, in memory.
struct EngineWorld {
  ModelScriptTasks tasks;
  MemoryFileManager files;
  ManualClock clock;
  RecordingCrashReporter crashReporter;
  RecordingVersionStore versions;

  engine::ScriptacularServices services() {
    return {.tasks = tasks,
            .files = files,
            .clock = clock,
            .crashReporter = crashReporter,
            .frontmostResolver = nullptr,
            .browserVersions = &versions};
  }

  engine::Scriptacular scriptacular(std::string appleScript = "return success(1)",
                                    engine::Scriptacular::Arguments args = {},
                                    engine::TargetContext target = chrome()) {
    return {services(), std::move(appleScript), std::move(args), std::move(target), engine::TellSystemEvents::no};
  }

  static engine::TargetContext chrome() { return {"com.google.chrome", "Google Chrome"}; }
  static engine::TargetContext safari() { return {"com.apple.safari", "Safari"}; }
};

} // namespace tabwright::testsupport
