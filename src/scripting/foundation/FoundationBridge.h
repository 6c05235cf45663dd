#pragma once

#include "applescript/values/ForeignObject.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace tabwright::scripting {

struct FoundationEnvironment;

/// The part of Foundation that scripts use: strings, dictionaries, arrays, JSON, data, numbers, dates.
///
///     FoundationBridge bridge;
///     // use framework "Foundation"
///     // (current application's NSString's stringWithString:"Ab")'s lowercaseString() as text   → "ab"
///
/// A class is a table of selectors (FoundationObject.h); adding one is adding a row, and a table to
/// `foundationClasses`. Objects come back from a method opaque. Counts, lengths, the numbers of an NSNumber and truths
/// come back as the language's own numbers and booleans, nil as `missing value`, and values without a class of their
/// own here as they are. Containers copy what is put into them, as bridging does, and keep their order.
///
/// Stateless but for the clock, so safe from several threads; an object belongs to one script.
class FoundationBridge final : public applescript::ObjectiveCBridge {
public:
  /// `now` gives seconds since 1970-01-01 00:00:00 UTC; by default the system's clock.
  explicit FoundationBridge(std::function<double()> now = {});

  /// A class as an object, a constant such as NSUTF8StringEncoding as an integer; nothing for any other name.
  [[nodiscard]] std::optional<applescript::Value> named(std::string_view name) const override;

private:
  std::shared_ptr<const FoundationEnvironment> environment_;
};

} // namespace tabwright::scripting
