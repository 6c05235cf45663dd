#pragma once

#include "platform/DefaultsKey.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::shell {

/// The permission to drive a browser, as the setup's trial found it.
enum class AssistiveAccessStatus {
  unknown,         ///< not tried yet
  appNotInstalled, ///< the browser isn't installed
  requesting,      ///< it is being tried now
  granted,         ///< the trial ended without error
  denied,          ///< the trial ended with an error
};

/// The case's name, as it is stored.
[[nodiscard]] std::string_view rawValue(AssistiveAccessStatus status);

/// The stored state of one browser.
struct BrowserState {
  /// The outcome of the last trial.
  AssistiveAccessStatus assistiveAccess = AssistiveAccessStatus::unknown;
  std::string version = "-"; ///< as a script last reported it; "-" for none yet

  bool operator==(const BrowserState&) const = default;

  /// {"assistiveAccess":"granted","version":"120.0"}
  [[nodiscard]] std::string json() const;
  /// Nothing for a text that isn't JSON, lacks one of the two keys or has a status that isn't known.
  [[nodiscard]] static std::optional<BrowserState> fromJSON(std::string_view text);
};

/// By bundle identifier.
using BrowserStates = std::map<std::string, BrowserState>;

} // namespace tabwright::shell

/// Kept as a dictionary of JSON texts. An entry that can't be read counts as a browser of which nothing is known, which
/// is logged once: so the next trial repairs it.
template <>
struct tabwright::platform::DefaultsCoding<tabwright::shell::BrowserStates> {
  static std::optional<shell::BrowserStates> from(const DefaultsValue& value);
  static DefaultsValue value(const shell::BrowserStates& states);
};
