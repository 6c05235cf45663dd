#pragma once

#include "engine/TargetContext.h"
#include "targets/TargetContextValue.h"

#include <boost/json/value.hpp>

#include <string_view>

namespace tabwright::targets {

/// The target of an action that works on whichever application: a browser, one that runs, or one that is installed. A
/// type of its own for its reading alone: it holds what any target does. An id that is read from a text and that no
/// table knows stands in lower case, and is the name too.
struct ApplicationTarget : engine::TargetContext {
  ApplicationTarget() = default;
  /// Implicit: each target of a browser is one.
  ApplicationTarget(engine::TargetContext context) : engine::TargetContext(std::move(context)) {}
};

} // namespace tabwright::targets

/// As other targets, but any text of letters, digits, dots, hyphens and underscores is an application's id: that of a
/// desktop entry, such as org.xfce.mousepad, or of an application that runs. Whether there is one is found out when an
/// action runs.
template <>
struct tabwright::intents::ValueTraits<tabwright::targets::ApplicationTarget> {
  /// Declared and printed as any target is.
  static ValueType type() { return ValueTraits<engine::TargetContext>::type(); }
  static boost::json::value toJson(const targets::ApplicationTarget& value) {
    return ValueTraits<engine::TargetContext>::toJson(value);
  }
  /// Throws `ValueError` for what is neither a target nor an id.
  static targets::ApplicationTarget fromJson(const boost::json::value& json);
  /// A text with a brace is an object; any other is a name or an id as it stands.
  static targets::ApplicationTarget fromText(std::string_view text);
};
