#pragma once

#include "engine/Scriptacular.h"

#include <regex>
#include <string>
#include <utility>

namespace tabwright::testsupport {

/// A program with the names of its jobs' variables, fresh in each, made alike.
inline std::string withoutJobNames(const std::string& program) {
  return std::regex_replace(program, std::regex("__[0-9A-HJKMNP-TV-Z]{26}"), "__ULID");
}

/// The program that an action with this body should have run, job names made alike.
inline std::string programOf(const engine::ScriptacularServices& services, std::string body,
                             const std::string& browserID, engine::Scriptacular::Arguments arguments = {}) {
  const engine::Scriptacular scriptacular(services, std::move(body), std::move(arguments), {browserID, "any name"},
                                          engine::TellSystemEvents::no);
  return withoutJobNames(scriptacular.buildScriptText());
}

} // namespace tabwright::testsupport
