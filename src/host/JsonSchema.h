#pragma once

#include "intents/Intent.h"

#include <boost/json/object.hpp>

namespace tabwright::host {

/// JSON Schema (draft 2020-12) of the object of an action's parameters, made from their declarations: an action is
/// described to other programs in the same words as to users.
///
/// Enums list the names of their cases, with the captions in the description. Where a text may name an entity the
/// schema says so; the choices offered at this moment are examples. Required are the parameters that have no default
/// and count whatever the others say. Texts are in the user's language.
[[nodiscard]] boost::json::object inputSchema(const intents::Intent& action);

/// JSON Schema of an action's result. All properties that an entity always has are required here. An optional result
/// may be null; an action without a result has the type null.
[[nodiscard]] boost::json::object outputSchema(const intents::Intent& action);

} // namespace tabwright::host
