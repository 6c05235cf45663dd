#pragma once

#include "platform/JSONReader.h"

#include <functional>
#include <optional>
#include <string_view>

namespace tabwright::engine {

namespace detail {
/// The part that is the same for all types, so that it is compiled once.
void decode(std::string_view text, const std::function<void(const platform::JSONReader&)>& read);
} // namespace detail

/// The value of a JSON text, of any type that `platform::JSONReader` reads. Any JSON value may stand at the top.
/// Throws `StringError::unableToDecodeJSON` for a text that is no JSON or has another shape, and logs the reason.
template <class T>
[[nodiscard]] T decodeJSON(std::string_view text) {
  std::optional<T> value;
  detail::decode(text, [&](const platform::JSONReader& reader) { value = reader.read<T>(); });
  return *std::move(value);
}

} // namespace tabwright::engine
