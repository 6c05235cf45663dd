#pragma once

#include <boost/json/value.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// The levels that a JSON text may be nested; deeper ones are refused wherever they come from.
inline constexpr std::size_t deepestJSON = 512;

/// The value of a JSON text by RFC 8259 in UTF-8: any value may stand at the top, members keep their order, and of
/// several with one key the last counts. Whole numbers that fit stay whole. Throws `JSONFailure` for everything else.
///
///     parseJSON(R"({"a": [1, 2.0]})")    // an object; its list holds a whole number and a double
[[nodiscard]] boost::json::value parseJSON(std::string_view text, std::size_t deepest = deepestJSON);

/// `escaped` is the form of NSJSONSerialization, which writes `\/`. Both forms are read as the same text.
enum class Slashes { plain, escaped };

/// Appends a text as JSON in quotes: `"`, `\`, control characters and, if so wished, `/` are escaped, everything else
/// stands for itself. Bytes that are no UTF-8 become U+FFFD.
void appendJSONText(std::string& output, std::string_view text, Slashes slashes);

} // namespace tabwright::platform
