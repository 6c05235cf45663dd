#include "engine/JSONDecoding.h"

#include "platform/Logger.h"

#include <boost/json/array.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/system/error_code.hpp>

#include <cmath>

namespace tabwright::engine {
namespace {

namespace json = boost::json;

const platform::Logger logger("Scriptacular");

std::string_view nameOf(json::kind kind) {
  switch (kind) {
  case json::kind::null:
    return "null";
  case json::kind::bool_:
    return "a boolean";
  case json::kind::int64:
  case json::kind::uint64:
  case json::kind::double_:
    return "a number";
  case json::kind::string:
    return "a text";
  case json::kind::array:
    return "a list";
  case json::kind::object:
    return "a record";
  }
  return "something else";
}

[[noreturn]] void mismatch(std::string_view expected, const json::value& found) {
  throw JSONMismatch("expected " + std::string(expected) + ", found " + std::string(nameOf(found.kind())));
}

} // namespace

JSONMismatch JSONMismatch::within(std::string_view step) const {
  JSONMismatch outer(reason_);
  outer.path_ = std::string(step) + path_;
  return outer;
}

const char* JSONMismatch::what() const noexcept {
  try {
    const std::string_view path = path_;
    text_ = path.empty() ? reason_ : std::string(path.substr(path.starts_with('.') ? 1 : 0)) + ": " + reason_;
    return text_.c_str();
  } catch (...) {
    return "a JSON value of the wrong type";
  }
}

std::string JSONDecoding<std::string>::from(const json::value& json) {
  if (!json.is_string())
    mismatch("a text", json);
  return std::string(json.get_string());
}

bool JSONDecoding<bool>::from(const json::value& json) {
  if (!json.is_bool())
    mismatch("a boolean", json);
  return json.get_bool();
}

std::int64_t JSONDecoding<std::int64_t>::from(const json::value& json) {
  boost::system::error_code error;
  const auto number = json.to_number<std::int64_t>(error);
  if (error)
    mismatch("a whole number", json);
  return number;
}

double JSONDecoding<double>::from(const json::value& json) {
  if (!json.is_number())
    mismatch("a number", json);
  return json.to_number<double>();
}

const json::object& requireObject(const json::value& json) {
  if (!json.is_object())
    mismatch("a record", json);
  return json.get_object();
}

const json::array& requireList(const json::value& json) {
  if (!json.is_array())
    mismatch("a list", json);
  return json.get_array();
}

namespace detail {

json::value parsePayload(std::string_view text) {
  boost::system::error_code error;
  json::value parsed = json::parse({text.data(), text.size()}, error);
  if (error) {
    logger.error("{}", error.message());
    throw platform::failure(StringError::unableToDecodeJSON);
  }
  return parsed;
}

void logDecodedPayload(const json::value& json) {
  if (logger.isOn(platform::LogLevel::debug))
    logger.debug("{}", json::serialize(json));
}

void logDecodingFailure(const std::exception& error) {
  logger.error("{}", error.what());
}

} // namespace detail
} // namespace tabwright::engine
