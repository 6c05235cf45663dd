#include "connect/ConnectionState.h"

#include "platform/Failure.h"
#include "platform/linux/ProcessAge.h"
#include "scripting/driver/RelayConnection.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <system_error>
#include <utility>

namespace tabwright::connect {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using platform::RunningBrowser;

constexpr std::chrono::seconds helperPatience = 2s;

std::optional<RunningBrowser> browserWith(const fs::path& directory, const std::vector<RunningBrowser>& running) {
  // One browser alone has a directory, and is the first of those that are seen with it: a process that it starts is its
  // copy for a moment.
  for (auto browser = running.rbegin(); browser != running.rend(); ++browser) {
    std::error_code ignored;
    if (browser->profileDirectory == directory || fs::equivalent(browser->profileDirectory, directory, ignored))
      return *browser;
  }
  return std::nullopt;
}

void place(ConnectionState& state, const HelperParts& parts, scripting::HelperDescription helper,
           const scripting::RelayPlace& relay) {
  const std::string directory = findProfileOfHelper(state.directory.path, parts.identity, helper.profile);
  const auto profile = std::ranges::find(
      state.profiles, directory, [](const ProfileState& each) -> const std::string& { return each.profile.directory; });
  if (profile == state.profiles.end() || directory.empty()) {
    state.profiles.push_back(
        {.profile = {.directory = directory, .name = directory}, .helper = std::move(helper), .relay = relay});
    return;
  }
  profile->helper = std::move(helper);
  profile->relay = relay;
}

} // namespace

bool ConnectionState::hasHelper() const {
  return std::ranges::any_of(profiles, [](const ProfileState& each) { return each.helper.has_value(); });
}

bool ConnectionState::isConnected() const {
  return std::ranges::any_of(profiles,
                             [](const ProfileState& each) { return each.helper && each.helper->mayRunScripts; });
}

std::vector<ConnectionState> lookAtConnections(const std::vector<UserDataDirectory>& directories,
                                               const HelperParts& parts, const platform::CallLimits& limits) {
  const std::vector<RunningBrowser> running = platform::RunningBrowsers().findAll();
  std::vector<ConnectionState> states;
  for (const UserDataDirectory& directory : directories) {
    ConnectionState state{.directory = directory,
                          .files = helperFilesIn(directory, parts),
                          .browser = browserWith(directory.path, running),
                          .hasSeenFiles = false,
                          .profiles = {},
                          .complaint = {}};
    for (BrowserProfile& profile : readProfiles(directory.path, parts.identity))
      state.profiles.push_back({.profile = std::move(profile), .helper = {}, .relay = {}});
    if (state.browser) {
      const auto age = platform::ageOfProcess(state.browser->process);
      const auto installedAt = helperInstalledAt(directory, parts);
      state.hasSeenFiles = age && installedAt && std::chrono::system_clock::now() - *age > *installedAt;
      for (const scripting::RelayPlace& relay : scripting::findRelays(*state.browser)) {
        try {
          const platform::CallLimits each = limits.within(helperPatience);
          const auto helper = scripting::RelayConnection::open(relay, *state.browser, {}, each);
          place(state, parts, scripting::describeHelper(*helper, each), relay);
        } catch (const platform::Failure& failure) {
          state.complaint = failure.errorDescription();
        }
      }
    }
    states.push_back(std::move(state));
  }
  return states;
}

bool openPage(const ConnectionState& state, const ProfileState& profile, const std::string& address,
              const platform::CallLimits& limits) {
  if (!state.browser || !profile.helper)
    return false;
  try {
    const platform::CallLimits near = limits.within(helperPatience);
    const auto helper = scripting::RelayConnection::open(profile.relay, *state.browser, {}, near);
    helper->perform("makeTab", {{"url", address}}, scripting::HelperCalls::Repeat::never, near);
    return true;
  } catch (const platform::Failure&) { // whoever reads the address opens it otherwise
    return false;
  }
}

bool endRelays(const fs::path& directory) {
  const auto browser = browserWith(directory, platform::RunningBrowsers().findAll());
  if (!browser)
    return false;
  for (const scripting::RelayPlace& relay : scripting::findRelays(*browser))
    ::kill(relay.relay, SIGTERM);
  return true;
}

} // namespace tabwright::connect
