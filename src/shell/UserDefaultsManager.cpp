// Changes hold copies of their keys and arguments, since the store may run them again later. Reports of actions and
// scripts go through `updateSoon`, which doesn't wait for the disk; the setup's are written at once. A look before a
// write spares most writes, and the write itself looks again, as another process may have been faster.
#include "shell/UserDefaultsManager.h"

#include "targets/SupportedBrowsers.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace tabwright::shell {
namespace {

using platform::DefaultsChange;

// "GC" of "Google Chrome".
std::string upperCaseLettersOf(std::string_view name) {
  std::string letters;
  const auto length = static_cast<std::int32_t>(name.size());
  for (std::int32_t index = 0; index < length;) {
    const std::int32_t start = index;
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(name.data(), index, length, character);
    if (u_hasBinaryProperty(character, UCHAR_UPPERCASE))
      letters += name.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(index - start));
  }
  return letters;
}

} // namespace

void UserDefaultsManager::resetBrowserStates() {
  store_.update([states = keys_.browserStates, granted = keys_.isAssistiveAccessGranted](DefaultsChange& change) {
    granted.set(change, false);
    BrowserStates all = states.get(change);
    for (const targets::TargetContext& browser : targets::supportedBrowsers()) {
      if (const auto entry = all.find(browser.id); entry != all.end())
        entry->second.assistiveAccess = AssistiveAccessStatus::unknown;
    }
    states.set(change, all);
  });
}

void UserDefaultsManager::setBrowserStatus(std::string_view id, AssistiveAccessStatus status) {
  keys_.browserStates.update([id = std::string(id), status](BrowserStates states) {
    if (const auto entry = states.find(id); entry != states.end())
      entry->second.assistiveAccess = status;
    return states;
  });
}

void UserDefaultsManager::recomputeAssistiveAccessGranted() {
  store_.update([states = keys_.browserStates, granted = keys_.isAssistiveAccessGranted](DefaultsChange& change) {
    const BrowserStates all = states.get(change);
    granted.set(change, std::ranges::all_of(all, [](const auto& entry) {
                  const AssistiveAccessStatus status = entry.second.assistiveAccess;
                  return status == AssistiveAccessStatus::granted || status == AssistiveAccessStatus::appNotInstalled;
                }));
  });
}

void UserDefaultsManager::setBrowserVersion(std::string_view id, std::string_view version) {
  // Nearly every call brings the version that is known, which costs no more than this look.
  const BrowserStates known = keys_.browserStates.get();
  const auto entry = known.find(std::string(id));
  if (entry == known.end() || entry->second.version == version)
    return;
  keys_.browserStates.updateSoon([id = std::string(id), version = std::string(version)](BrowserStates states) {
    if (const auto found = states.find(id); found != states.end())
      found->second.version = version;
    return states;
  });
}

std::string UserDefaultsManager::browserVersionList() const {
  const BrowserStates states = keys_.browserStates.get();
  std::string list;
  for (const targets::TargetContext& browser : targets::supportedBrowsers()) {
    const auto entry = states.find(browser.id);
    const std::string text =
        upperCaseLettersOf(browser.name) + ' ' + (entry == states.end() ? "-" : entry->second.version);
    // The version of a browser that no script has met.
    if (text.ends_with('-'))
      continue;
    list += list.empty() ? "" : ", ";
    list += text;
  }
  return list;
}

void UserDefaultsManager::recordFirstLaunch(const platform::Clock& clock) {
  if (keys_.firstLaunchTimestamp.get() > 0)
    return;
  keys_.firstLaunchTimestamp.updateSoon(
      [now = clock.secondsSinceReferenceDate()](double stored) { return stored > 0 ? stored : now; });
}

void UserDefaultsManager::countCall() {
  keys_.actionsCallCount.updateSoon(
      [](std::int64_t count) { return count < std::numeric_limits<std::int64_t>::max() ? count + 1 : count; });
}

void UserDefaultsManager::set(const std::string& fullID, const std::string& name) {
  keys_.windowNames.updateSoon([fullID, name](std::map<std::string, std::string> names) {
    names.insert_or_assign(fullID, name);
    return names;
  });
}

std::map<std::string, std::string> UserDefaultsManager::names() const {
  return keys_.windowNames.get();
}

void UserDefaultsManager::pruneWindowNames(const std::set<std::string>& currentWindows) {
  const auto isGone = [currentWindows](const auto& entry) { return !currentWindows.contains(entry.first); };
  // Windows are listed far more often than one with a name goes.
  if (std::ranges::none_of(keys_.windowNames.get(), isGone))
    return;
  keys_.windowNames.updateSoon([isGone](std::map<std::string, std::string> names) {
    std::erase_if(names, isGone);
    return names;
  });
}

} // namespace tabwright::shell
