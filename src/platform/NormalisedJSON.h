#pragma once

#include <string>
#include <string_view>

namespace tabwright::platform {

/// A JSON document read and written again without its layout: what NSJSONSerialization makes of data that it parses
/// without options and writes without options, save that keys keep their order.
///
///     normalisedJSON("{ \"a\" : [1.50, \"x/y\"],\n \"a\" : 2 }")    // {"a":[1.50,"x\/y"]}
///
/// The input is JSON by RFC 8259 with an object or a list at the top, in UTF-8, UTF-16 or UTF-32 of either byte
/// order, with or without a byte order mark (without one the encoding is told by the zero bytes among the first four,
/// as RFC 4627 has it). Of several members with one key the first counts. Throws `JSONFailure` for anything else:
/// another value at the top, a text that ends too early or goes on behind its end, comments, trailing commas, NaN and
/// numbers too large for a double, halves of surrogate pairs, bytes that are no text, more levels than `deepestJSON`.
///
/// The output is UTF-8 in one line. Numbers stand as they came, so none loses a digit. In texts, `/` is written
/// `\/` and control characters are escaped; everything else stands for itself, and U+2028 too. The result may stand in
/// JavaScript as a literal of the same value (ECMAScript 2019 and later), but for members with the key `__proto__`,
/// which such a literal takes for its prototype.
[[nodiscard]] std::string normalisedJSON(std::string_view data);

} // namespace tabwright::platform
