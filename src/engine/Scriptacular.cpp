// Assembly first, then the road of a script file: task, event, outcome, payload.
#include "engine/Scriptacular.h"

#include "engine/ScriptFailureMapping.h"
#include "engine/ScriptLayers.h"
#include "engine/ScriptTriple.h"
#include "engine/errors/AppleScriptRuntimeError.h"
#include "engine/errors/ScriptacularError.h"
#include "platform/Logger.h"
#include "platform/Whitespace.h"

#include <cassert>
#include <memory>
#include <optional>

namespace tabwright::engine {
namespace {

using platform::AppleEvent;
using platform::AppleEventDescriptor;
using platform::Failure;
using platform::fourCharCode;

const platform::Logger logger("Scriptacular");

constexpr std::string_view systemEventsID = "com.apple.systemevents";

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
  AppleEvent event{.eventClass = fourCharCode("ascr"), .eventID = fourCharCode("psbr"), .parameters = {}};
  event.parameters.emplace(fourCharCode("snam"), AppleEventDescriptor::string(std::string(mainHandlerName)));
  event.parameters.emplace(fourCharCode("----"), std::move(values));
  return event;
}

std::unique_ptr<platform::UserAppleScriptTask> makeTask(const std::filesystem::path& scriptURL,
                                                        const ScriptacularServices& services) {
  try {
    return services.tasks.initWithURL(scriptURL);
  } catch (const Failure& error) {
    services.crashReporter.captureError(error);
    logger.error("Couldn't initialize task: {}", error.errorDescription());
    logger.error("{}", errorDescription(ScriptacularError::unableToWrite));
    throw platform::failure(ScriptacularError::unableToWrite);
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
  if (logger.isOn(platform::LogLevel::debug))
    logger.debug("Arguments: {}", textForm(args_));
  return text;
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

platform::Task<std::string> Scriptacular::payloadOfScript(std::filesystem::path scriptURL) {
  const auto task = makeTask(scriptURL, services_);
  logger.debug("File: {}", scriptURL.string());
  std::optional<AppleEventDescriptor> result;
  try {
    AppleEvent event = mainHandlerEvent(args_);
    result = co_await task->executeWithAppleEvent(std::move(event));
  } catch (const Failure& error) {
    const std::string description = error.errorDescription();
    logger.error("Runtime error: {}", description);
    if (const auto mapped = scriptacularErrorOf(description))
      throw platform::failure(*mapped);
    throw;
  }
  if (!result) {
    logger.debug("Runtime result: (null)");
    throw platform::failure(ScriptacularError::malformedScriptResult);
  }
  if (logger.isOn(platform::LogLevel::debug))
    logger.debug("Runtime result: {}", result->description());
  ScriptTriple triple = ScriptTriple::decode(*result);
  if (services_.browserVersions && !isOnboarding_ && triple.browserVersion &&
      !platform::isBlank(*triple.browserVersion))
    services_.browserVersions->setBrowserVersion(targetContext_.id, *triple.browserVersion);
  co_return std::move(triple.payload);
}

} // namespace tabwright::engine
