#pragma once

#include "engine/errors/StringError.h"
#include "platform/Failure.h"

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::engine {

/// A JSON value that doesn't fit the type it is decoded into. `what()` tells where and why:
/// "tabsList[2].tabTitle: expected text, found a number".
class JSONMismatch final : public std::exception {
public:
  explicit JSONMismatch(std::string reason) : reason_(std::move(reason)) {}
  /// The same mismatch seen from one level further out: `step` is ".key" or "[index]".
  [[nodiscard]] JSONMismatch within(std::string_view step) const;
  [[nodiscard]] const char* what() const noexcept override;

private:
  std::string path_;
  std::string reason_;
  mutable std::string text_;
};

/// How a type is read from JSON. Types are strict: a number is no text, a missing key no default.
///
/// Text, boolean, `std::int64_t`, `double` and lists of decodable types are built in. A record joins in by a
/// specialisation beside it, with the one function `from`, which throws `JSONMismatch`:
///
///     template <>
///     struct tabwright::engine::JSONDecoding<Point> {
///       static Point from(const boost::json::value& json) {
///         const auto& object = requireObject(json);
///         return {.x = requiredField<double>(object, "x"), .y = fieldOr<double>(object, "y", 0)};
///       }
///     };
template <class T>
struct JSONDecoding;

template <>
struct JSONDecoding<std::string> {
  static std::string from(const boost::json::value& json);
};
template <>
struct JSONDecoding<bool> {
  static bool from(const boost::json::value& json);
};
/// Any number without a fraction that fits.
template <>
struct JSONDecoding<std::int64_t> {
  static std::int64_t from(const boost::json::value& json);
};
template <>
struct JSONDecoding<double> {
  static double from(const boost::json::value& json);
};

/// The object, or a mismatch.
[[nodiscard]] const boost::json::object& requireObject(const boost::json::value& json);
/// The items of the list, or a mismatch.
[[nodiscard]] const boost::json::array& requireList(const boost::json::value& json);

template <class T>
struct JSONDecoding<std::vector<T>> {
  static std::vector<T> from(const boost::json::value& json) {
    const boost::json::array& list = requireList(json);
    std::vector<T> items;
    items.reserve(list.size());
    for (std::size_t index = 0; index < list.size(); ++index) {
      try {
        items.push_back(JSONDecoding<T>::from(list[index]));
      } catch (const JSONMismatch& mismatch) {
        throw mismatch.within("[" + std::to_string(index) + "]");
      }
    }
    return items;
  }
};

/// The field of a record that has a default: `fallback` when the key is missing or null. A wrong type is a mismatch.
template <class T>
[[nodiscard]] T fieldOr(const boost::json::object& object, std::string_view key, T fallback) {
  const boost::json::value* field = object.if_contains({key.data(), key.size()});
  if (!field || field->is_null())
    return fallback;
  try {
    return JSONDecoding<T>::from(*field);
  } catch (const JSONMismatch& mismatch) {
    throw mismatch.within("." + std::string(key));
  }
}

/// The field of a record that has no default.
template <class T>
[[nodiscard]] T requiredField(const boost::json::object& object, std::string_view key) {
  const boost::json::value* field = object.if_contains({key.data(), key.size()});
  if (!field)
    throw JSONMismatch("the key is missing").within("." + std::string(key));
  try {
    return JSONDecoding<T>::from(*field);
  } catch (const JSONMismatch& mismatch) {
    throw mismatch.within("." + std::string(key));
  }
}

namespace detail {
/// Throws `StringError::unableToDecodeJSON`, having logged the reason, when `text` is no JSON.
[[nodiscard]] boost::json::value parsePayload(std::string_view text);
void logDecodedPayload(const boost::json::value& json);
void logDecodingFailure(const std::exception& error);
} // namespace detail

/// The value that the JSON text stands for. Any JSON value may stand at the top level. Throws
/// `StringError::unableToDecodeJSON` for a text that is no JSON or doesn't fit the type, and logs the reason.
template <class T>
[[nodiscard]] T decodeJSON(std::string_view text) {
  const boost::json::value json = detail::parsePayload(text);
  try {
    T value = JSONDecoding<T>::from(json);
    detail::logDecodedPayload(json);
    return value;
  } catch (const JSONMismatch& mismatch) {
    detail::logDecodingFailure(mismatch);
    throw platform::failure(StringError::unableToDecodeJSON);
  }
}

} // namespace tabwright::engine
