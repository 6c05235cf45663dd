// The switches are named as the browser's page writes them.
#include "connect/ConnectionAdvice.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::connect {
namespace {

using Kind = Advice::Kind;

void adviseOnSwitches(std::vector<Advice>& advice, const std::string& profile,
                      const scripting::HelperDescription& helper, const HelperParts& parts) {
  if (!helper.mayRunScripts)
    advice.push_back({Kind::allowScripts,
                      fmt::format("In {}, open {} and switch on “Allow User Scripts”, further down on that page: until "
                                  "then no script runs in a page. Where “Keep” or “Remove” is asked, choose “Keep”.",
                                  profile, parts.settingsPage())});
  if (!helper.seesPrivateWindows)
    advice.push_back({Kind::allowPrivate,
                      fmt::format("Private windows of {} are invisible to Tabwright. To have them too, open {} and "
                                  "switch on “Allow in Incognito”.",
                                  profile, parts.settingsPage())});
  if (!helper.readsFiles)
    advice.push_back(
        {Kind::allowFiles, fmt::format("Pages from files (file:) are out of reach in {}. To have them too, open {} and "
                                       "switch on “Allow access to file URLs”.",
                                       profile, parts.settingsPage())});
}

} // namespace

std::vector<Advice> adviceFor(const ConnectionState& state, const HelperParts& parts) {
  const platform::BrowserFacts& facts = *state.directory.facts;
  std::vector<Advice> advice;
  if (state.directory.sandbox != Sandbox::none) {
    advice.push_back({Kind::sandboxed, sandboxSentence(state.directory)});
    return advice;
  }
  if (state.files == HelperFiles::absent && !state.hasHelper())
    advice.push_back({Kind::install, fmt::format("“tabwright connect {}” installs Tabwright’s helper in {}.",
                                                 facts.shortName, facts.name)});
  if (state.files == HelperFiles::other)
    advice.push_back(
        {Kind::renew, fmt::format("The helper’s files for {} are not those of this Tabwright: “tabwright connect "
                                  "{}” renews them.",
                                  facts.name, facts.shortName)});
  if (!state.complaint.empty())
    advice.push_back(
        {Kind::mendHelper, fmt::format("Tabwright’s helper can’t be spoken to: {} Close all windows of {} and start "
                                       "it again.",
                                       state.complaint, facts.name)});
  for (const ProfileState& profile : state.profiles) {
    if (profile.helper)
      adviseOnSwitches(advice, nameOf(profile, facts), *profile.helper, parts);
    else if (profile.profile.isHelperRemoved)
      advice.push_back({Kind::loadByHand,
                        fmt::format("The helper was removed from {}, and doesn’t come again by itself. To have "
                                    "it back, open chrome://extensions there, switch on “Developer mode”, choose “Load "
                                    "unpacked” and the folder {}.",
                                    nameOf(profile, facts), parts.unpacked.string())});
  }
  const bool isInstalled = state.files == HelperFiles::present || state.files == HelperFiles::forAllUsers;
  const bool isAwaited = state.profiles.empty() || std::ranges::any_of(state.profiles, [](const ProfileState& profile) {
                           return !profile.profile.isHelperRemoved;
                         });
  if (!isInstalled || !isAwaited || state.hasHelper() || !state.complaint.empty())
    return advice;
  if (!state.browser)
    advice.push_back({Kind::start, fmt::format("Start {}: it takes Tabwright’s helper in then.", facts.name)});
  else if (state.hasSeenFiles)
    advice.push_back(
        {Kind::look, fmt::format("{} was started since Tabwright’s helper was installed, but the helper is "
                                 "not there yet. Look at chrome://extensions whether it is on, and at "
                                 "chrome://policy whether extensions are forbidden.",
                                 facts.name)});
  else
    advice.push_back(
        {Kind::restart, fmt::format("Close all windows of {} and start it again: it takes Tabwright’s helper "
                                    "in then.",
                                    facts.name)});
  return advice;
}

std::string_view nameOf(Kind kind) {
  switch (kind) {
  case Kind::sandboxed:
    return "sandboxed";
  case Kind::install:
    return "install";
  case Kind::renew:
    return "renew";
  case Kind::start:
    return "start";
  case Kind::restart:
    return "restart";
  case Kind::look:
    return "look";
  case Kind::loadByHand:
    return "loadByHand";
  case Kind::allowScripts:
    return "allowScripts";
  case Kind::allowPrivate:
    return "allowPrivate";
  case Kind::allowFiles:
    return "allowFiles";
  case Kind::mendHelper:
    break;
  }
  return "mendHelper";
}

std::string nameOf(const ProfileState& profile, const platform::BrowserFacts& browser) {
  if (profile.profile.directory.empty())
    return fmt::format("a profile of {}", browser.name);
  return fmt::format("the profile “{}” of {}", profile.profile.name, browser.name);
}

} // namespace tabwright::connect
