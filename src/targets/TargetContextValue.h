#pragma once

#include "engine/TargetContext.h"
#include "intents/EntityDefinition.h"
#include "intents/ValueTraits.h"

#include <boost/json/value.hpp>

#include <string_view>

/// Targets as values of parameters, properties and results: objects `{"id": ..., "name": ...}`.
///
/// Read from an object whose id gets into lower case and is a bundle identifier (letters, digits, dots, hyphens and
/// underscores; else `ValueError`), with or without a name, or from a text that names a supported browser or the
/// frontmost one as `findTargetContext` takes it. A text that holds such an object or such a name in quotes, as another
/// action printed it, will do too.
template <>
///     {"id": "org.chromium.chromium"}    chromium    "Google Chrome"    frontmost
struct tabwright::intents::ValueTraits<tabwright::engine::TargetContext> {
  /// The properties of a target: `id`, which is needed, and `name`.
  static const EntityDefinition<engine::TargetContext>& definition();
  static ValueType type() { return {.kind = ValueKind::entity, .entity = &definition().declaration()}; }
  static boost::json::value toJson(const engine::TargetContext& value) { return definition().toJson(value); }
  /// A missing name is the table's, or the id. Throws `ValueError`.
  static engine::TargetContext fromJson(const boost::json::value& json);
  /// A bare name, or JSON. Throws `ValueError`.
  static engine::TargetContext fromText(std::string_view text);
};
