// Assembly first, then the road of a script file: task, event, outcome, payload. Values of a user's go along with the
// event where they can, so that they never become part of the program's text; each step's failure is translated into
// the catalogue's case once, here, with what really happened beneath it.
#include "engine/Scriptacular.h"

#include "engine/ScriptFailureMapping.h"
#include "engine/ScriptLayers.h"
#include "engine/ScriptTriple.h"
#include "engine/errors/AppleScriptRuntimeError.h"
#include "engine/errors/ScriptacularError.h"
#include "platform/Logger.h"
#include "platform/Whitespace.h"

#include <fmt/core.h>

#include <algorithm>
#include <cassert>
#include <iterator>
#include <memory>
#include <optional>

namespace tabwright::engine {
namespace {

using platform::AppleEvent;
using platform::AppleEventDescriptor;
using platform::Failure;
using platform::fourCharCode;

const platform::Logger scriptLog("Scriptacular");

constexpr std::string_view systemEventsID = "com.apple.systemevents";

// Identifiers all, so nothing has to be quoted.
std::string joinedKeys(const Scriptacular::Arguments& args) {
  std::string keys;
  for (const auto& [key, value] : args)
    keys += (keys.empty() ? "" : ", ") + key;
  return keys;
}

std::string textForm(const Scriptacular::Arguments& args) {
  if (args.empty())
    return "[:]";
  std::string text = "[";
  for (const auto& [key, value] : args)
    text.append(text.size() > 1 ? ", \"" : "\"").append(key).append("\": \"").append(value).append("\"");
  return text += ']';
}

// The call of the main handler: its name, and the values alone, in the order of its parameters.
AppleEvent mainHandlerEvent(const Scriptacular::Arguments& args) {
  AppleEventDescriptor values = AppleEventDescriptor::list();
  for (const auto& [key, value] : args)
    values.append(AppleEventDescriptor::string(value));
  // AppleScript's own event for the call of a handler by its name.
  AppleEvent event{.eventClass = fourCharCode("ascr"), .eventID = fourCharCode("psbr"), .parameters = {}};
  event.parameters.emplace(fourCharCode("snam"), AppleEventDescriptor::string(std::string(mainHandlerName)));
  event.parameters.emplace(fourCharCode("----"), std::move(values));
  return event;
}

std::unique_ptr<platform::UserAppleScriptTask> makeTask(const platform::WrittenFile& script,
                                                        const ScriptacularServices& services) {
  try {
    return services.tasks.initWithURL(script);
  } catch (const Failure& error) {
    services.crashReporter.captureError(error);
    scriptLog.error("Couldn't initialize task: {}", error.errorDescription());
    scriptLog.error("{}", errorDescription(ScriptacularError::unableToWrite));
    throw platform::failure(ScriptacularError::unableToWrite);
  }
}

constexpr std::size_t longestQuote = 200; // bytes

std::string shortened(const std::string& text) {
  if (text.size() <= longestQuote)
    return text;
  std::size_t end = longestQuote;
  // Not in the middle of a character.
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
    --end;
  return text.substr(0, end) + "…";
}

platform::Notice wrongResult(const std::string& result) {
  return {{"ScriptResult", "wrongForm", {}},
          fmt::format("A script’s result is the list that “my success(…)” or “my failure(…)” makes; this one gave {}.",
                      result)};
}

/// A script that ended in a failure's number can't say why; what was noticed last while it ran can. With nothing
/// noticed, one that ran to its end without a result waited for a page in vain.
ScriptTriple decoded(const AppleEventDescriptor& result, const std::vector<platform::Notice>& notices) {
  try {
    return ScriptTriple::decode(result);
  } catch (platform::CatalogueFailure<AppleScriptRuntimeError>& failure) {
    if (!notices.empty())
      failure.setCause(notices.back());
    else if (failure.kind() == AppleScriptRuntimeError::frontAppIsNotABrowser)
      failure.setCause(platform::Notice{{"PageCode", "noAnswer", {}},
                                        "The page gave no answer in the time that the action has for it. Its code "
                                        "takes longer, or waits for something "
                                        "that doesn’t come, such as a promise that is never settled."});
    throw;
  } catch (platform::CatalogueFailure<ScriptacularError>& failure) {
    failure.setCause(wrongResult(shortened(result.description())));
    throw;
  }
}

} // namespace

Scriptacular::Scriptacular(const ScriptacularServices& services, std::string appleScript, Arguments args,
                           TargetContext targetContext, TellSystemEvents tellSystemEvents)
    : services_(services), appleScript_(std::move(appleScript)), args_(std::move(args)),
      targetContext_(std::move(targetContext)), tellSystemEvents_(tellSystemEvents) {}

Scriptacular Scriptacular::forOnboarding(const ScriptacularServices& services) {
  Scriptacular scriptacular(services, "", {}, frontmostTargetContext(), TellSystemEvents::no);
  scriptacular.isOnboarding_ = true;
  return scriptacular;
}

std::string Scriptacular::buildScriptText() const {
  assert(!targetContext_.id.empty());
  const std::string body = preparedBody(appleScript_);
  const bool toSystemEvents = tellSystemEvents_ == TellSystemEvents::yes;
  std::string text =
      scriptLayers(targetContext_.id)
          .fill({{"ARGKEYS", joinedKeys(args_)},
                 {"MAIN_RECEIVER_ID", toSystemEvents ? systemEventsID : std::string_view(targetContext_.id)},
                 {"BROWSER_BUNDLE_ID", targetContext_.id},
                 {"APPLESCRIPT", body}});
  if (scriptLog.isOn(platform::LogLevel::debug))
    scriptLog.debug("Arguments: {}", textForm(args_));
  return text;
}

void Scriptacular::placeInOwnLines(Failure& failure, std::string_view text) const {
  if (!failure.cause() || !failure.cause()->line)
    return;
  platform::Notice cause = *failure.cause();
  // The lines of the layers before the action's own, whose line numbers begin behind them.
  const std::string_view before = text.substr(0, text.find(preparedBody(appleScript_)));
  const auto first = static_cast<std::size_t>(std::ranges::count(before, '\n'));
  cause.line = *cause.line > first ? sourceLine(appleScript_, *cause.line - first) : std::nullopt;
  failure.setCause(std::move(cause));
}

platform::Task<void> Scriptacular::resolveFrontmostBrowser() {
  if (targetContext_ != frontmostTargetContext())
    co_return;
  if (!services_.frontmostResolver)
    throw platform::failure(AppleScriptRuntimeError::frontAppIsNotABrowser);
  // The lookup is a program of its own whose handler takes nothing, so this one's arguments stay here.
  Scriptacular lookup(services_, "", {}, targetContext_, TellSystemEvents::no);
  lookup.isOnboarding_ = isOnboarding_;
  TargetContext browser = co_await services_.frontmostResolver->resolve(lookup);
  targetContext_ = std::move(browser);
}

platform::Task<std::string> Scriptacular::payloadOfScript(const platform::WrittenFile& script) {
  const auto task = makeTask(script, services_);
  scriptLog.debug("File: {}", script.path().string());
  std::optional<AppleEventDescriptor> result;
  try {
    AppleEvent event = mainHandlerEvent(args_);
    result = co_await task->executeWithAppleEvent(std::move(event));
  } catch (const Failure& error) {
    const std::string description = error.errorDescription();
    scriptLog.error("Runtime error: {}", description);
    // The user is told the catalogue's sentence; AppleScript's own words stay beneath it.
    if (const auto mapped = scriptacularErrorOf(description))
      throw platform::failure(*mapped).causedBy(platform::asCause(error));
    throw;
  }
  // Before the outcome is read: a result that is a failure's number has its cause among them.
  std::ranges::move(task->notices(), std::back_inserter(notices_));
  if (!result) {
    scriptLog.debug("Runtime result: (null)");
    throw platform::failure(ScriptacularError::malformedScriptResult).causedBy(wrongResult("nothing"));
  }
  if (scriptLog.isOn(platform::LogLevel::debug))
    scriptLog.debug("Runtime result: {}", result->description());
  ScriptTriple triple = decoded(*result, notices_);
  if (services_.browserVersions && !isOnboarding_ && triple.browserVersion &&
      !platform::isBlank(*triple.browserVersion))
    services_.browserVersions->setBrowserVersion(targetContext_.id, *triple.browserVersion);
  co_return std::move(triple.payload);
}

} // namespace tabwright::engine
