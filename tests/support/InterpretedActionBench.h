#pragma once

#include "engine/Scriptacular.h"
#include "scripting/run/DescriptorConversion.h"
#include "support/ActionBench.h"
#include "support/ScriptBench.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// Actions whose programs really run, in the interpreter, against the models: what an action does can be seen in
/// `world.browser`, which plays both families; Safari's process on the desktop has the same windows. Frontmost lookups
/// are answered by `actions.frontmostID`.
struct InterpretedActionBench {
  ScriptBench world;
  ActionBench actions;

  InterpretedActionBench() {
    world.desktop->onLook = [this] { nameSafariWindows(); };
    actions.tasks.onExecute = [this, canned = actions.tasks.onExecute](const std::filesystem::path& script) {
      const std::string& text = actions.files.files.at(script);
      const bool isLookup = text.find("frontProcess") != std::string::npos;
      return isLookup ? canned(script) : interpret(text, actions.tasks.events.back());
    };
  }

  boost::json::value perform(std::string name, host::ParameterTexts parameters) {
    return actions.perform(std::move(name), std::move(parameters));
  }

  /// The case of the failure that an action ends in, such as "tabNotFound".
  std::string failureOf(std::string name, host::ParameterTexts parameters) {
    try {
      perform(std::move(name), std::move(parameters));
    } catch (const platform::Failure& failure) {
      return failure.identity().caseName;
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
  }

private:
  // Safari's process gives its windows other names than Safari does when they are private: scripts tell them apart by
  // it.
  void nameSafariWindows() {
    std::vector<std::string> names;
    for (const scripting::WindowState& window : world.browser->windows())
      names.push_back(window.mode == scripting::WindowMode::incognito ? "Private Browsing" : window.title);
    world.desktop->all.clear();
    world.desktop->add(8, "Editor", "org.example.editor"); // in front
    world.desktop->add(9, "Safari", "com.apple.safari", names);
  }

  platform::Task<ModelScriptTasks::Result> interpret(std::string program, platform::AppleEvent event) {
    actions.steps.emplace_back("run");
    actions.scripts.push_back(program);
    std::vector<applescript::Value> arguments;
    if (const auto list = event.parameters.find(platform::fourCharCode("----")); list != event.parameters.end()) {
      for (std::size_t index = 1; index <= list->second.numberOfItems(); ++index)
        arguments.push_back(scripting::valueOf(*list->second.descriptorAtIndex(index)));
    }
    const auto script = world.interpreter.compile(std::move(program));
    co_return scripting::descriptorOf(world.interpreter.call(*script, engine::mainHandlerName, std::move(arguments)));
  }
};

} // namespace tabwright::testsupport
