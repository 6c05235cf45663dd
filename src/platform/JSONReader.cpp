// The parts that don't depend on the type that is read, kept out of the template. Values are named by their kind in
// JSON, as their sender knows them, and all numbers are “a number”: how one was stored is the parser's matter.
#include "platform/JSONReader.h"

#include <fmt/core.h>

namespace tabwright::platform {

namespace {

std::string_view nameOf(boost::json::kind kind) {
  switch (kind) {
  case boost::json::kind::null:
    return "null";
  case boost::json::kind::bool_:
    return "a boolean";
  case boost::json::kind::int64:
  case boost::json::kind::uint64:
  case boost::json::kind::double_:
    return "a number";
  case boost::json::kind::string:
    return "a text";
  case boost::json::kind::array:
    return "a list";
  case boost::json::kind::object:
    return "an object";
  }
  // Not reached: the switch has every kind.
  return "something else";
}

} // namespace

std::string JSONReader::placeOf(std::string_view key) const {
  return place_.empty() ? std::string(key) : fmt::format("{}.{}", place_, key);
}

std::string JSONReader::placeOf(std::size_t index) const {
  return fmt::format("{}[{}]", place_, index);
}

const boost::json::object& JSONReader::object() const {
  if (!value_->is_object())
    throwMismatch(place_, "an object", *value_);
  return value_->get_object();
}

const boost::json::value* JSONReader::findMember(std::string_view key) const {
  return object().if_contains(key);
}

const boost::json::array& JSONReader::requireArray() const {
  if (!value_->is_array())
    throwMismatch(place_, "a list", *value_);
  return value_->get_array();
}

void JSONReader::throwMismatch(const std::string& place, std::string_view expected, const boost::json::value& found) {
  // The kind of what was found, never its value, which may be long or a secret.
  throw JSONMismatch(place, fmt::format("expected {}, found {}", expected, nameOf(found.kind())));
}

} // namespace tabwright::platform
