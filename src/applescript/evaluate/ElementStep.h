#pragma once

#include "applescript/ScriptError.h"
#include "applescript/syntax/Tree.h"
#include "applescript/values/ObjectSpecifier.h"

#include <memory>

namespace tabwright::applescript {

/// The keys of an access to elements, evaluated.
struct ElementKey {
  Value first; ///< index, name, id, or start of the range
  Value last;  ///< end of the range
};

/// The step that an access adds to a specifier, with its form and keys and without container, application and test.
[[nodiscard]] std::shared_ptr<ObjectSpecifier> stepOf(const ElementAccess& access, const ElementKey& key);

/// −1728 `Can’t get item 9 of {1}.`
[[nodiscard]] ScriptError cannotGetElement(const ElementAccess& access, const ElementKey& key, const Value& container);

} // namespace tabwright::applescript
