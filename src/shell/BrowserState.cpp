// One JSON text for each browser, so that a damaged one costs the state of that browser only. The status is stored by
// its name rather than its number: a case that is added doesn't change what older states mean.
#include "shell/BrowserState.h"

#include "platform/JSONReader.h"
#include "platform/JSONText.h"
#include "platform/Logger.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <array>
#include <atomic>
#include <cstddef>
#include <utility>

namespace tabwright::shell {
namespace {

const platform::Logger stateLog("UserDefaults");

// In the order of the enum.
constexpr std::array<std::string_view, 5> statusNames{"unknown", "appNotInstalled", "requesting", "granted", "denied"};
static_assert(statusNames.size() == static_cast<std::size_t>(AssistiveAccessStatus::denied) + 1);

std::optional<AssistiveAccessStatus> statusNamed(std::string_view name) {
  for (std::size_t index = 0; index < statusNames.size(); ++index) {
    if (statusNames[index] == name)
      return static_cast<AssistiveAccessStatus>(index);
  }
  return std::nullopt;
}

} // namespace

std::string_view rawValue(AssistiveAccessStatus status) {
  return statusNames[static_cast<std::size_t>(status)];
}

std::string BrowserState::json() const {
  return boost::json::serialize(
      boost::json::object{{"assistiveAccess", rawValue(assistiveAccess)}, {"version", version}});
}

std::optional<BrowserState> BrowserState::fromJSON(std::string_view text) {
  try {
    const boost::json::value json = platform::parseJSON(text);
    const platform::JSONReader reader(json);
    const auto status = statusNamed(reader.require<std::string>("assistiveAccess"));
    const auto version = reader.require<std::string>("version");
    return status ? std::optional(BrowserState{*status, version}) : std::nullopt;
  } catch (const platform::Failure&) {
    return std::nullopt;
  }
}

} // namespace tabwright::shell

namespace tabwright::platform {

std::optional<shell::BrowserStates> DefaultsCoding<shell::BrowserStates>::from(const DefaultsValue& value) {
  const auto* texts = std::get_if<std::map<std::string, std::string>>(&value);
  if (!texts)
    return std::nullopt;
  shell::BrowserStates states;
  for (const auto& [id, text] : *texts) {
    std::optional<shell::BrowserState> state = shell::BrowserState::fromJSON(text);
    static std::atomic<bool> isLogged = false; // the map is read all the time
    if (!state && !isLogged.exchange(true))
      shell::stateLog.error("The stored state of {} can't be read: {}", id, text);
    states.emplace(id, std::move(state).value_or(shell::BrowserState()));
  }
  return states;
}

DefaultsValue DefaultsCoding<shell::BrowserStates>::value(const shell::BrowserStates& states) {
  std::map<std::string, std::string> texts;
  for (const auto& [id, state] : states)
    texts.emplace(id, state.json());
  return texts;
}

} // namespace tabwright::platform
