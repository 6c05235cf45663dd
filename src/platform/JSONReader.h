#pragma once

#include "platform/Failure.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/value.hpp>
#include <boost/json/value_to.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace tabwright::platform {

/// A JSON value of another shape than its reader takes, and its place in what came.
class JSONMismatch final : public Failure {
public:
  /// `place` is empty for the value at the top; `complaint` a clause.
  JSONMismatch(const std::string& place, std::string_view complaint)
      : clause_((place.empty() ? "" : place + ": ").append(complaint)) {}

  /// The clause for sentences that say what was read: "tabsList[2].tabTitle: expected a text, found a number".
  [[nodiscard]] const std::string& clause() const noexcept { return clause_; }
  [[nodiscard]] std::string errorDescription() const override { return "The JSON has another shape: " + clause_ + "."; }
  [[nodiscard]] FailureIdentity identity() const override { return {"JSONMismatch", "mismatch", {}}; }

private:
  std::string clause_;
};

/// Reads a JSON value into types, strictly: a number is no text, a missing key no default. Knows its place in what
/// came, so that a `JSONMismatch` names it.
///
///     const JSONReader reader(json);
///     for (const JSONReader& tab : reader.require<std::vector<JSONReader>>("tabs"))
///       titles.push_back(tab.require<std::string>("title"));
///
/// The types are text, boolean, whole numbers, `double`, lists of such types, `JSONReader` for a part to be read
/// further, and any record with the function
///
///     static Record fromJSON(const JSONReader& reader);
///
/// A reader refers to its value, which outlives it and stays as it is meanwhile. Members that nobody asks for are
/// passed over, so a sender may tell more than its reader knows. Copies are cheap but for the text of the place.
class JSONReader {
public:
  /// `place` names the value in mismatches, such as "tabs[2]"; none is given for the value at the top.
  explicit JSONReader(const boost::json::value& value, std::string place = {})
      : value_(&value), place_(std::move(place)) {}
  /// A temporary would be gone before it is read. Keep the value in a variable of its own.
  explicit JSONReader(boost::json::value&&, std::string = {}) = delete;

  /// The value as an object, for a look at its members. Throws a mismatch for any other value. Valid as long as the
  /// value.
  [[nodiscard]] const boost::json::object& object() const;

  /// The failure of this value, for what its types don't say.
  [[nodiscard]] JSONMismatch mismatch(std::string_view complaint) const { return {place_, complaint}; }

  /// The value itself. A whole number may be written with a fraction of zero, but must fit.
  template <class T>
  [[nodiscard]] T read() const;

  /// The member of an object that has to be there.
  template <class T>
  [[nodiscard]] T require(std::string_view key) const {
    const boost::json::value* member = findMember(key);
    if (member == nullptr)
      throw JSONMismatch(placeOf(key), "the key is missing");
    return readPart<T>(*member, key);
  }

  /// The member of an object that may be missing or null.
  template <class T>
  [[nodiscard]] std::optional<T> find(std::string_view key) const {
    const boost::json::value* member = findMember(key);
    return member == nullptr || member->is_null() ? std::nullopt : std::optional<T>(readPart<T>(*member, key));
  }

private:
  template <class T>
  static constexpr bool isScalar = std::is_same_v<T, std::string> || std::is_arithmetic_v<T>;
  template <class T>
  static constexpr std::string_view expected = std::is_same_v<T, std::string> ? "a text"
                                               : std::is_same_v<T, bool>      ? "a boolean"
                                               : std::is_integral_v<T>        ? "a whole number"
                                                                              : "a number";

  // Most parts are scalars, whose place is put into words for a mismatch alone.
  template <class T, class Step>
  T readPart(const boost::json::value& part, Step step) const {
    if constexpr (isScalar<T>)
      return readScalar<T>(part, [&] { return placeOf(step); });
    else
      return JSONReader(part, placeOf(step)).template read<T>();
  }

  template <class T, class Place>
  static T readScalar(const boost::json::value& value, const Place& place) {
    auto scalar = boost::json::try_value_to<T>(value);
    if (!scalar)
      throwMismatch(place(), expected<T>, value);
    return std::move(*scalar);
  }

  /// The places of a member and of an item, such as "tabs[2].title".
  [[nodiscard]] std::string placeOf(std::string_view key) const;
  [[nodiscard]] std::string placeOf(std::size_t index) const;
  /// Null when the object lacks the key. Throws a mismatch when this is no object.
  [[nodiscard]] const boost::json::value* findMember(std::string_view key) const;
  /// Throws a mismatch when this is no list.
  [[nodiscard]] const boost::json::array& requireArray() const;
  /// `expected` is a noun with its article; what was found is named in the same way.
  [[noreturn]] static void throwMismatch(const std::string& place, std::string_view expected,
                                         const boost::json::value& found);

  /// Not owned; never null.
  const boost::json::value* value_;
  /// Keys and indices from the top, as JavaScript would write them.
  std::string place_;
};

template <class T>
T JSONReader::read() const {
  if constexpr (std::is_same_v<T, JSONReader>) {
    return *this;
  } else if constexpr (isScalar<T>) {
    return readScalar<T>(*value_, [&] { return place_; });
  } else if constexpr (requires { typename T::value_type; }) {
    const boost::json::array& array = requireArray();
    T items;
    items.reserve(array.size());
    for (std::size_t index = 0; index < array.size(); ++index)
      items.push_back(readPart<typename T::value_type>(array[index], index));
    return items;
  } else {
    return T::fromJSON(*this);
  }
}

} // namespace tabwright::platform
