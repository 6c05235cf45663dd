#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tabwright::platform {

/// Four characters packed big-endian into 32 bits, as Apple events name their classes, ids and keywords. Case counts,
/// and blanks fill up shorter names.
using FourCharCode = std::uint32_t;

/// `fourCharCode("ascr")` is 0x61736372.
consteval FourCharCode fourCharCode(const char (&text)[5]) {
  return static_cast<FourCharCode>(static_cast<unsigned char>(text[0])) << 24 |
         static_cast<FourCharCode>(static_cast<unsigned char>(text[1])) << 16 |
         static_cast<FourCharCode>(static_cast<unsigned char>(text[2])) << 8 |
         static_cast<FourCharCode>(static_cast<unsigned char>(text[3]));
}

/// The value of an Apple event's parameter or of a script's result, as it crosses between this program and a script.
///
/// A value type: copies are deep. Reading never fails: a descriptor that can't be coerced gives the neutral value
/// noted at each reader, as the event interface it stands for does.
///
///     AppleEventDescriptor parameters = AppleEventDescriptor::list();
///     parameters.append(AppleEventDescriptor::string("tab"));
///     parameters.descriptorAtIndex(1)->stringValue()    // tab
class AppleEventDescriptor {
public:
  using List = std::vector<AppleEventDescriptor>;

  AppleEventDescriptor() = default; ///< the null descriptor
  static AppleEventDescriptor boolean(bool value) { return AppleEventDescriptor(Value(value)); }
  static AppleEventDescriptor integer(std::int32_t value) { return AppleEventDescriptor(Value(value)); }
  static AppleEventDescriptor real(double value) { return AppleEventDescriptor(Value(value)); }
  static AppleEventDescriptor string(std::string utf8) { return AppleEventDescriptor(Value(std::move(utf8))); }
  static AppleEventDescriptor list(List items = {}) { return AppleEventDescriptor(Value(std::move(items))); }
  /// A value that has no form of its own here; `description` is its source form, and its only reading.
  static AppleEventDescriptor other(std::string description) {
    return AppleEventDescriptor(Value(Other{std::move(description)}));
  }

  /// Adds an item at the end. The descriptor must be a list. Throws std::bad_variant_access for another.
  void append(AppleEventDescriptor item);

  /// In the order of the alternatives of `Value`, whose index is the kind.
  enum class Kind { null, boolean, integer, real, string, list, other };
  [[nodiscard]] Kind kind() const { return static_cast<Kind>(value_.index()); }

  /// Items of a list; 0 for anything else.
  [[nodiscard]] std::size_t numberOfItems() const;
  /// The item at a 1-based index; nothing outside the list, and nothing if this is no list.
  [[nodiscard]] std::optional<AppleEventDescriptor> descriptorAtIndex(std::size_t index) const;
  /// The boolean; a non-zero number is true; anything else false.
  [[nodiscard]] bool booleanValue() const;
  /// The number, truncated towards zero; a text that holds a whole number gives it; anything else 0. A number beyond
  /// the range gives the end of the range next to it, and NaN 0.
  [[nodiscard]] std::int32_t int32Value() const;
  /// The number; 0 when this is none. A text that holds a whole number gives it here too.
  [[nodiscard]] double doubleValue() const {
    const double* real = std::get_if<double>(&value_);
    return real ? *real : int32Value();
  }
  /// The text, UTF-8; nothing when this is no text.
  [[nodiscard]] std::optional<std::string> stringValue() const;
  /// A readable form for logs. Lists stand in braces, texts in quotes.
  [[nodiscard]] std::string description() const;

private:
  struct Other {
    std::string description;
  };
  using Value = std::variant<std::monostate, bool, std::int32_t, double, std::string, List, Other>;
  explicit AppleEventDescriptor(Value value) : value_(std::move(value)) {}

  Value value_;
};

/// An event sent to a script: class, id, and parameters by keyword. Keywords are unique in it, and their order doesn't
/// count.
struct AppleEvent {
  FourCharCode eventClass = 0;
  FourCharCode eventID = 0;
  std::map<FourCharCode, AppleEventDescriptor> parameters;
};

} // namespace tabwright::platform
