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
    for (const ProfileState& profile : state.profiles) {
      if (!profile.helper)
        continue;
      const std::string name = nameOf(profile, *state.directory.facts);
      say(news, fmt::format("The helper is in {}.", name));
      if (profile.helper->mayRunScripts)
        say(news, fmt::format("It may run scripts in the pages of {}.", name));
    }
    // A browser that is just starting, or ending, may be too busy to answer once.
    const bool isPersistent = complained_.contains(state.directory.path);
    if (state.complaint.empty())
      complained_.erase(state.directory.path);
    else
      complained_.insert(state.directory.path);
    for (const Advice& advice : adviceFor(state, parts_)) {
      if (advice.kind == Kind::mendHelper && !isPersistent)
        continue;
      // One that has just started has it in a moment; else the failure in the end says it.
      if (advice.kind == Kind::look)
        continue;
      // These are no steps on the way to a browser that can be driven, so they come last.
      const bool isExtra = advice.kind == Kind::allowPrivate || advice.kind == Kind::allowFiles;
      if (!isExtra || state.isConnected())
        say(news, advice.sentence);
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
