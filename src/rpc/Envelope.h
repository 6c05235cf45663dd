#pragma once

#include <boost/json/value.hpp>

#include <string_view>

namespace tabwright::rpc {

/// The members that tell whom a message is for.
struct Envelope {
  boost::json::value id;  ///< a text or a number; null where none can be told
  bool hasMethod = false; ///< without one it is an answer
};

/// The envelope of bytes that are no JSON as a whole, or only the begin of one: as much as its outermost members tell.
/// Of an id that stands there twice the last counts. Members of objects further inside are no part of it.
[[nodiscard]] Envelope envelopeOf(std::string_view text);

} // namespace tabwright::rpc
