#include "connect/ConnectWatch.h"

#include "connect/ConnectionAdvice.h"

#include <fmt/core.h>

#include <algorithm>

namespace tabwright::connect {
namespace {

using Kind = Advice::Kind;

bool isConnectable(const ConnectionState& state) {
  return state.directory.sandbox == Sandbox::none;
}

} // namespace

void ConnectWatch::say(std::vector<std::string>& news, const std::string& sentence) {
  if (said_.insert(sentence).second)
    news.push_back(sentence);
}

std::vector<std::string> ConnectWatch::observe(const std::vector<ConnectionState>& states) {
  std::vector<std::string> news;
  last_ = states;
  std::erase_if(last_, [](const ConnectionState& state) { return !isConnectable(state); });
  isConnected_ = std::ranges::any_of(last_, &ConnectionState::isConnected);
  for (const ConnectionState& state : last_) {
    const std::string_view browser = state.directory.facts->name;
    for (const ProfileState& profile : state.profiles) {
      if (!profile.helper)
        continue;
      if (helpers_.insert(profile.helper->profile).second)
        say(news, fmt::format("{}: the helper is there, in {}.", browser, nameOf(profile)));
      if (profile.helper->mayRunScripts)
        say(news, fmt::format("{}: scripts may run in {}.", browser, nameOf(profile)));
    }
    for (const Advice& advice : adviceFor(state, parts_)) {
      // The last words of all, once the browser can be driven: it is no step on the way there.
      if (advice.kind != Kind::allowPrivate || state.isConnected())
        say(news, fmt::format("{}: {}", browser, advice.sentence));
    }
  }
  return news;
}

ConnectFailure ConnectWatch::failureAfter(int seconds) const {
  const auto withHelper = std::ranges::find_if(last_, &ConnectionState::hasHelper);
  const ConnectFault fault = withHelper == last_.end() ? ConnectFault::notSeen : ConnectFault::noScripts;
  std::string sentence;
  if (fault == ConnectFault::noScripts)
    sentence = fmt::format("The helper is in {}, but may not run scripts: “Allow User Scripts” was still off after {} "
                           "seconds. Open {} in it, switch it on, and run the command again.",
                           withHelper->directory.facts->name, seconds, parts_.settingsPage());
  else
    sentence =
        fmt::format("The helper has not come within {} seconds. What was installed stays: start the browser anew "
                    "and run the command again. If it runs anew already, look at chrome://extensions whether the "
                    "helper is there and on, and at chrome://policy whether extensions are forbidden.",
                    seconds);
  return platform::failure(fault, std::move(sentence));
}

} // namespace tabwright::connect
