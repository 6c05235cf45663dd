#pragma once

#include "applescript/events/ObjectSpecifier.h"
#include "applescript/terminology/Terminology.h"
#include "applescript/values/Value.h"

#include <string>

namespace tabwright::scripting {

/// A specifier in source form for the sentences of errors, in the words of the application's dictionary and else of the
/// language's: `URL of tab id "8" of window id "3"`, `window 1 whose active tab index > 0`. The application at the root
/// is left out; the application alone is `application`. Codes without words show as `«class CODE»`.
[[nodiscard]] std::string specifierText(const applescript::ObjectSpecifier& specifier,
                                        const applescript::Terminology& terminology);

/// A value in source form, specifiers as above.
[[nodiscard]] std::string valueText(const applescript::Value& value, const applescript::Terminology& terminology);

} // namespace tabwright::scripting
