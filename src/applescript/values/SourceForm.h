#pragma once

#include "applescript/events/ObjectSpecifier.h"
#include "applescript/values/Value.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tabwright::applescript {

/// A value in source form (see `sourceForm` in Interpreter.h), cut off with `…` once it has grown longer than `limit`
/// bytes. Never fails: what can't be read, such as a reference to an item that is gone, is shown by its place.
[[nodiscard]] std::string sourceFormUpTo(const Value& value, std::size_t limit);

/// For the sentences of errors, which people read: the source form of at most a few lines.
[[nodiscard]] std::string shortSourceForm(const Value& value);

/// A specifier in source form, down to its application: `tab 3 of window id 5 of application "X"`.
[[nodiscard]] std::string sourceForm(const ObjectSpecifier& specifier);

/// A name as source has it: between bars when it isn't an identifier.
[[nodiscard]] std::string nameInSource(std::string_view name);

/// The words of a class, or `«class CODE»` for one without.
[[nodiscard]] std::string classWords(const ClassName& name);

} // namespace tabwright::applescript
