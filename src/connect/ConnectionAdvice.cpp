// The switches are named as the browser's page writes them.
#include "connect/ConnectionAdvice.h"

#include <fmt/core.h>

namespace tabwright::connect {
namespace {

using Kind = Advice::Kind;

void adviseOnSwitches(std::vector<Advice>& advice, const ProfileState& profile, const HelperParts& parts) {
  if (!profile.helper->mayRunScripts)
    advice.push_back({Kind::allowScripts,
                      fmt::format("In {}, open {} and switch on “Allow User Scripts”: until then no script runs in a "
                                  "page.",
                                  nameOf(profile), parts.settingsPage())});
  if (!profile.helper->seesPrivateWindows)
    advice.push_back({Kind::allowPrivate,
                      fmt::format("Private windows of {} are invisible to Tabwright. To have them too, open {} and "
                                  "switch on “Allow in Incognito”.",
                                  nameOf(profile), parts.settingsPage())});
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
    advice.push_back({Kind::install, fmt::format("“tabwright connect {}” installs the helper.", facts.shortName)});
  if (state.files == HelperFiles::other)
    advice.push_back({Kind::renew, fmt::format("The helper’s files are not those of this Tabwright: “tabwright connect "
                                               "{}” renews them.",
                                               facts.shortName)});
  if (!state.complaint.empty())
    advice.push_back({Kind::mendHelper,
                      fmt::format("The helper is there, but can’t be spoken to: {} Close all windows of {} and start "
                                  "it again.",
                                  state.complaint, facts.name)});
  for (const ProfileState& profile : state.profiles) {
    if (profile.helper)
      adviseOnSwitches(advice, profile, parts);
    else if (profile.profile.isHelperRemoved)
      advice.push_back(
          {Kind::loadByHand,
           fmt::format("The helper was removed from {}, and {} doesn’t take it in again by itself. To have "
                       "it back, open chrome://extensions there, switch on “Developer mode”, choose “Load "
                       "unpacked” and the folder {}.",
                       nameOf(profile), facts.name, parts.unpacked.string())});
  }
  const bool isInstalled = state.files == HelperFiles::present || state.files == HelperFiles::forAllUsers;
  if (!isInstalled || state.hasHelper() || !state.complaint.empty())
    return advice;
  if (!state.browser)
    advice.push_back({Kind::start, fmt::format("Start {}: it takes the helper in by itself.", facts.name)});
  else
    advice.push_back({Kind::restart, fmt::format("Close all windows of {} and start it again: it takes the helper in "
                                                 "when it starts.",
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
  case Kind::loadByHand:
    return "loadByHand";
  case Kind::allowScripts:
    return "allowScripts";
  case Kind::allowPrivate:
    return "allowPrivate";
  case Kind::mendHelper:
    break;
  }
  return "mendHelper";
}

std::string nameOf(const ProfileState& profile) {
  if (profile.profile.directory.empty())
    return "a profile";
  return fmt::format("the profile “{}”", profile.profile.name);
}

} // namespace tabwright::connect
