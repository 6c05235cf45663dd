// System Events and this program are there from the start. A browser's application is made when a script first speaks
// to it, and kept; a browser that can't be reached yet is asked for again. All look-ups go in one order: those two, the
// table of browsers, then what runs on the desktop.
#include "scripting/ScriptingDirectory.h"

#include "platform/AsciiCase.h"
#include "scripting/PlainApplication.h"
#include "scripting/chromium/ChromiumApplication.h"
#include "scripting/chromium/ChromiumTerminology.h"
#include "scripting/model/Comparison.h"
#include "scripting/safari/SafariApplication.h"
#include "scripting/safari/SafariTerminology.h"
#include "scripting/systemevents/SystemEventsApplication.h"

#include <algorithm>
#include <utility>

namespace tabwright::scripting {

using applescript::ScriptableApplication;
using applescript::Terminology;
using platform::BrowserFacts;

namespace {

const BrowserFacts* findFacts(std::string_view BrowserFacts::* column, std::string_view text) {
  const auto row = std::ranges::find_if(platform::browserTable, [&](const BrowserFacts& facts) {
    return sameIgnoringCase(facts.*column, platform::splitProfile(text).browser);
  });
  return row == platform::browserTable.end() ? nullptr : &*row;
}

using NameOf = std::string DesktopProcess::*;

std::optional<DesktopProcess> findProcess(Desktop& desktop, NameOf member, std::string_view name) {
  std::vector<DesktopProcess> processes = desktop.processes();
  const auto process =
      std::ranges::find_if(processes, [&](const DesktopProcess& each) { return sameIgnoringCase(each.*member, name); });
  return process != processes.end() ? std::optional(std::move(*process)) : std::nullopt;
}

/// Brings the process of that name to the front, unless it is there.
void activateProcess(Desktop& desktop, NameOf member, std::string_view name) {
  // Scripts activate before each key. The desktop keeps its answer to this question for a moment.
  const std::optional<DesktopProcess> front = desktop.frontmost();
  if (front && sameIgnoringCase((*front).*member, name))
    return;
  if (const std::optional<DesktopProcess> process = findProcess(desktop, member, name))
    desktop.activate(process->pid);
}

const Terminology* terminologyOf(const BrowserFacts& facts) {
  switch (facts.family) {
  case platform::BrowserFamily::chromium:
    return &chromiumTerminology();
  case platform::BrowserFamily::safari:
    return &safariTerminology();
  }
  return nullptr;
}

} // namespace

ScriptingDirectory::ScriptingDirectory(ScriptingServices services)
    : services_(std::move(services)), systemEvents_(std::make_shared<SystemEventsApplication>(services_.desktop)),
      self_(std::make_shared<PlainApplication>(services_.ownName, services_.ownBundleIdentifier,
                                               services_.activateSelf)) {}

const Terminology* ScriptingDirectory::terminologyByID(std::string_view bundleIdentifier) const {
  for (const auto& application : {systemEvents_, self_}) {
    if (sameIgnoringCase(application->bundleIdentifier(), bundleIdentifier))
      return application->terminology();
  }
  if (const BrowserFacts* facts = findFacts(&BrowserFacts::id, bundleIdentifier))
    return terminologyOf(*facts);
  // It has no dictionary, but handlers of the runtime library must compile.
  return running(&DesktopProcess::bundleIdentifier, bundleIdentifier) ? &chromiumTerminology() : nullptr;
}

const Terminology* ScriptingDirectory::terminologyByName(std::string_view name) const {
  for (const auto& application : {systemEvents_, self_}) {
    if (sameIgnoringCase(application->name(), name))
      return application->terminology();
  }
  if (const BrowserFacts* facts = findFacts(&BrowserFacts::name, name))
    return terminologyOf(*facts);
  return running(&DesktopProcess::name, name) ? &chromiumTerminology() : nullptr;
}

std::shared_ptr<ScriptableApplication> ScriptingDirectory::findByID(std::string_view bundleIdentifier) {
  // Before all others: no program on the desktop may take these names.
  for (const auto& application : {systemEvents_, self_}) {
    if (sameIgnoringCase(application->bundleIdentifier(), bundleIdentifier))
      return application;
  }
  const BrowserFacts* facts = findFacts(&BrowserFacts::id, bundleIdentifier);
  return facts ? browser(*facts, platform::splitProfile(bundleIdentifier).profile)
               : running(&DesktopProcess::bundleIdentifier, bundleIdentifier);
}

std::shared_ptr<ScriptableApplication> ScriptingDirectory::findByName(std::string_view name) {
  for (const auto& application : {systemEvents_, self_}) {
    if (sameIgnoringCase(application->name(), name))
      return application;
  }
  const BrowserFacts* facts = findFacts(&BrowserFacts::name, name);
  return facts ? browser(*facts, platform::splitProfile(name).profile) : running(&DesktopProcess::name, name);
}

/// The application of a process that has this name; null when none runs.
std::shared_ptr<ScriptableApplication> ScriptingDirectory::running(NameOf member, std::string_view text) const {
  const std::optional<DesktopProcess> process = findProcess(*services_.desktop, member, text);
  if (!process)
    return nullptr;
  return std::make_shared<PlainApplication>(
      process->name, process->bundleIdentifier,
      [desktop = services_.desktop, text = std::string(text), member] { activateProcess(*desktop, member, text); });
}

std::shared_ptr<ScriptableApplication> ScriptingDirectory::browser(const BrowserFacts& facts,
                                                                   std::string_view profileName) {
  const std::string profile = platform::lowercased(profileName);
  const platform::MutexLock lock(mutex_);
  // Made under the lock, so that two scripts that speak to a browser first share one driver and its connection.
  std::shared_ptr<ScriptableApplication>& application = browsers_[{facts.id, profile}];
  if (application)
    return application;
  std::shared_ptr<BrowserDriver> driver = services_.makeDriver ? services_.makeDriver(facts, profile) : nullptr;
  if (!driver)
    return nullptr;
  // The hooks may refer to `facts`: rows of the table live as long as the program.
  BrowserHooks hooks;
  if (services_.launch)
    hooks.launch = [launch = services_.launch, &facts] { launch(facts); };
  hooks.raise = [desktop = services_.desktop, &facts] {
    activateProcess(*desktop, &DesktopProcess::bundleIdentifier, facts.id);
  };
  hooks.isFrontmost = [desktop = services_.desktop, &facts] {
    const std::optional<DesktopProcess> front = desktop->frontmost();
    return front && front->bundleIdentifier == facts.id;
  };
  if (facts.family == platform::BrowserFamily::safari)
    application = std::make_shared<SafariApplication>(facts, std::move(driver), std::move(hooks));
  else
    application = std::make_shared<ChromiumApplication>(facts, std::move(driver), std::move(hooks));
  return application;
}

} // namespace tabwright::scripting
