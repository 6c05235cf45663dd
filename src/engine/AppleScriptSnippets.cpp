// Each piece is a resource file whose placeholders are filled in one pass, so that a user's text is never searched for
// them. A job's JavaScript is filled first and escaped as a whole when it goes into the AppleScript around it.
#include "engine/AppleScriptSnippets.h"

#include "engine/PageLibrary.h"
#include "engine/ScriptText.h"
#include "engine/Scriptacular.h"
#include "engine/ULID.h"
#include "engine/errors/AppleScriptRuntimeError.h"
#include "platform/Logger.h"
#include "platform/TextTemplate.h"
#include "tabwright_engineResources.h"

#include <fmt/core.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tabwright::engine {

using platform::TextTemplate;

namespace {

const platform::Logger snippetsLog("AppleScriptSnippets");

std::string numberOf(AppleScriptRuntimeError error) {
  return std::to_string(rawValue(error));
}

// One poll before the first interval, then one after each.
std::string pollCount(double timeout, double interval) {
  if (!std::isfinite(timeout) || !std::isfinite(interval) || interval <= 0)
    throw std::invalid_argument("a job needs a finite timeout and an interval above zero");
  constexpr double largestInteger = 536870911; // the script's integers have 30 bits
  const double intervals = std::clamp(std::trunc(timeout / interval), -largestInteger, largestInteger - 1);
  return std::to_string(static_cast<long>(intervals) + 1);
}

// The driver knows jobs again by the text of `plantedJob_js`, so that is filled and never changed here.
std::string jobCode(std::string_view js, const JobVariables& variables) {
  static const TextTemplate work(resources::jobWork_js);
  static const TextTemplate planted(resources::plantedJob_js);
  return planted.fill({{"CANARY", variables.canary},
                       {"WORK", work.fill({{"PAGE_LIBRARY", pageLibrary()}, {"JS", js}})},
                       {"RESULT", variables.result},
                       {"EMPTY_RESULT_MARKER", AppleScriptSnippets::emptyResultMarker()}});
}

} // namespace

JobVariables JobVariables::fresh() {
  std::string result = "__" + freshULID();
  return {.result = std::move(result), .canary = "__" + freshULID()};
}

const std::string& AppleScriptSnippets::openWindowsCheck() {
  static const std::string text = TextTemplate(resources::openWindowsCheck_applescript)
                                      .fill({{"NO_OPEN_WINDOWS", numberOf(AppleScriptRuntimeError::noOpenWindows)}});
  return text;
}

std::string AppleScriptSnippets::requestedWindowCheck(std::string_view windowID) {
  static const TextTemplate text(resources::requestedWindowCheck_applescript);
  return text.fill({{"WINDOW_ID", windowID}, {"WINDOW_NOT_FOUND", numberOf(AppleScriptRuntimeError::windowNotFound)}});
}

std::string AppleScriptSnippets::typing(const Keystrokes& keystrokes, std::string_view targetID) {
  static const TextTemplate text(resources::simulateTyping_applescript);
  // The script's list reads "command down, shift down"; joining leaves the last one without its word.
  const std::string lastDown = keystrokes.modifiers.empty() ? "" : " down";
  return text.fill({{"TEXT", escapeForLiteral(keystrokes.text)},
                    {"TARGET", targetID},
                    {"HELD", fmt::format("{}{}", fmt::join(keystrokes.modifiers, " down, "), lastDown)},
                    {"KEYS", fmt::format("{}", fmt::join(keystrokes.modifiers, ", "))},
                    {"SECONDS", textOfDouble(keystrokes.secondsBetween)}});
}

const std::string& AppleScriptSnippets::frontVariables() {
  static const std::string text = TextTemplate(resources::frontVariables_applescript).fill({});
  return text;
}

std::string AppleScriptSnippets::tabLookup(std::string_view tabFullID, TabLookupBinds binds) {
  static const TextTemplate text(resources::tabLookup_applescript);
  return text.fill({{"TAB_ID", nativeID(tabFullID)},
                    {"TAB_NOT_FOUND", numberOf(AppleScriptRuntimeError::tabNotFound)},
                    {"VARIABLES", binds == TabLookupBinds::tab ? "{nativeTab}" : "{nativeTab, nativeWindow}"}});
}

std::string AppleScriptSnippets::jobForFrontTab(std::string_view js, double timeout, double interval) {
  return joinedLines(
      {openWindowsCheck(), frontVariables(), "set nativeTab to FRONT_TAB", asyncJob(js, timeout, interval)});
}

std::string AppleScriptSnippets::jobForRequestedTab(std::string_view tabFullID, std::string_view js, double timeout,
                                                    double interval) {
  // The job works on `nativeTab`, which the lookup binds by itself.
  return joinedLines({openWindowsCheck(), tabLookup(tabFullID), asyncJob(js, timeout, interval)});
}

std::string AppleScriptSnippets::asyncJob(std::string_view js, double timeout, double interval) {
  return asyncJob(js, timeout, interval, JobVariables::fresh());
}

std::string AppleScriptSnippets::asyncJob(std::string_view js, double timeout, double interval,
                                          const JobVariables& variables) {
  snippetsLog.debug("JS:\n{}", js);
  static const TextTemplate job(resources::asyncJob_applescript);
  static const TextTemplate canary(resources::canaryQuestion_js);
  static const TextTemplate result(resources::resultQuestion_js);
  static const TextTemplate removal(resources::resultRemoval_js);
  return job.fill({{"JOB_CODE", escapeForLiteral(jobCode(js, variables))},
                   {"POLL_COUNT", pollCount(timeout, interval)},
                   {"CANARY_QUESTION", canary.fill({{"CANARY", variables.canary}})},
                   {"RESULT_QUESTION", result.fill({{"RESULT", variables.result}})},
                   {"RESULT_REMOVAL", removal.fill({{"RESULT", variables.result}})},
                   {"PAGE_LOAD_DURING_EXECUTION", numberOf(AppleScriptRuntimeError::pageLoadDuringExecution)},
                   {"INTERVAL", textOfDouble(interval)}});
}

const std::string& AppleScriptSnippets::pageReload() {
  static const std::string code = TextTemplate(resources::pageReload_js).fill({});
  return code;
}

const std::string& AppleScriptSnippets::emptyResultMarker() {
  // Different in each process, so no page can return it by accident or know it beforehand.
  static const std::string marker = "res" + freshULID();
  return marker;
}

std::string AppleScriptSnippets::frontmostScriptText(std::span<const std::string> browserIDs) {
  static const TextTemplate text(resources::frontmostLookup_applescript);
  std::string list;
  for (const std::string& id : browserIDs)
    list += (list.empty() ? "\"" : ", \"") + id + "\"";
  return text.fill({{"MAIN_HANDLER", mainHandlerName}, {"BROWSER_BUNDLE_IDS", list}});
}

std::string AppleScriptSnippets::permissionTriggerScript(std::string_view bundleID, std::string_view applicationName) {
  static const TextTemplate text(resources::permissionTrigger_applescript);
  return text.fill({{"MAIN_HANDLER", mainHandlerName}, {"BUNDLE_ID", bundleID}, {"APPLICATION_NAME", applicationName}});
}

} // namespace tabwright::engine
