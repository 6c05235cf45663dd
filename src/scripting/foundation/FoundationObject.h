#pragma once

#include "applescript/values/ForeignObject.h"
#include "applescript/values/Value.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace tabwright::scripting {

/// The part of the world that class methods need. One is shared by all classes that a bridge gives.
struct FoundationEnvironment {
  std::function<double()> now; ///< seconds since 1970-01-01 00:00:00 UTC
};

class FoundationObject;
using Arguments = std::vector<applescript::Value>;

/// A row of a table. `call` gets as many arguments as the selector has colons, references looked through.
struct FoundationMethod {
  std::string_view selector;
  applescript::Value (*call)(FoundationObject& self, const Arguments& arguments);
};

/// A class: its own methods, and those it inherits. Tables with static storage.
///
///     constexpr FoundationMethod methods[]{{"length", length}};
///     constinit const FoundationClass dataClass{"NSData", &objectClass, {}, {}, methods};
struct FoundationClass {
  std::string_view name;
  const FoundationClass* superclass = nullptr;
  std::span<const FoundationMethod> classMethods = {};
  std::span<const FoundationMethod> initializers = {}; ///< of what `alloc` gives
  std::span<const FoundationMethod> methods = {};
};

/// The entries of a dictionary, in the order in which their keys first came. Keys differ when their case does. A key
/// that was a record's label keeps the label, so that the way back gives the same record.
class FoundationDictionary {
public:
  using Entry = std::pair<applescript::Label, applescript::Value>;

  /// Valid until the dictionary changes.
  [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
  /// Null when there is no such key. Valid until the dictionary changes.
  [[nodiscard]] const applescript::Value* find(std::string_view key) const;
  /// Replaces the value of a key that is there, which keeps its place and its label; else adds one at the end.
  void set(applescript::Label key, applescript::Value value);
  /// A key that isn't there is no error. Costs a pass over the entries.
  void remove(std::string_view key);
  void reserve(std::size_t count) { entries_.reserve(count); }

private:
  [[nodiscard]] std::size_t positionOf(std::string_view key) const;

  std::vector<Entry> entries_;
  std::unordered_map<std::string, std::size_t> positions_; ///< kept once there are more than a few
};

/// The items of an array, as `stored` keeps them.
struct FoundationArray {
  std::vector<applescript::Value> items;
};
/// NSData: any bytes, be they UTF-8 or not.
struct FoundationData {
  std::string bytes;
};
/// NSNumber; it remembers in which form the number came.
struct FoundationNumber {
  applescript::Value value; ///< integer, real or boolean
};
/// NSDate: a moment.
struct FoundationDate {
  double secondsSince1970 = 0; ///< UTC
};
/// The sets that texts are trimmed by: Foundation's of the same names.
enum class CharacterSet { whitespace, whitespaceAndNewline, newline };
/// NSNull, which stands for `missing value` in containers.
struct FoundationNull {};
/// The result of `alloc`: an object whose initializer has not run, and which understands nothing else.
struct FoundationAllocated {};
/// The class itself. Its methods may ask the environment, such as for the time.
struct FoundationMetaclass {
  std::shared_ptr<const FoundationEnvironment> environment;
};

/// The content of an object. A text, dictionary, array and so on belongs to the classes of that kind, mutable or not.
using FoundationPayload =
    std::variant<FoundationMetaclass, FoundationAllocated, applescript::Text, FoundationDictionary, FoundationArray,
                 FoundationData, FoundationNumber, FoundationDate, CharacterSet, FoundationNull>;

/// An object or a class of Foundation. A mutable one is shared by all that hold it, as in Objective-C. For one script,
/// and so for one thread at a time.
class FoundationObject final : public applescript::ForeignObject,
                               public std::enable_shared_from_this<FoundationObject> {
public:
  FoundationObject(const FoundationClass& type, FoundationPayload payload)
      : type_(type), payload_(std::move(payload)) {}

  /// Throws ScriptError: −1708 for a selector that the class hasn't, −10000 for another number of arguments than its
  /// colons, and what the method throws.
  applescript::Value send(std::string_view selector, const Arguments& arguments) override;
  /// Unwraps at every depth. Nothing for classes, data, character sets and what has not been initialized.
  [[nodiscard]] std::optional<applescript::Value> unwrapped() const override;
  /// Such as «class ocid» NSData.
  [[nodiscard]] std::string description() const override;

  [[nodiscard]] const FoundationClass& type() const { return type_; }
  /// The payload of a method's own object. Throws std::bad_variant_access for another kind.
  template <class Payload>
  [[nodiscard]] Payload& as() {
    return std::get<Payload>(payload_);
  }
  /// Null for an object of another kind.
  template <class Payload>
  [[nodiscard]] const Payload* get() const {
    return std::get_if<Payload>(&payload_);
  }

private:
  const FoundationClass& type_;
  FoundationPayload payload_;
};

/// A new object as a value. `type` is one of the classes below; it and the payload must go together.
[[nodiscard]] applescript::Value makeObject(const FoundationClass& type, FoundationPayload payload);

/// The payload of an argument that is a foreign object of that kind; null for any other value.
template <class Payload>
[[nodiscard]] const Payload* payloadOf(const applescript::Value& value) {
  const auto* foreign = value.get<applescript::Value::ForeignPointer>();
  const auto* object = foreign != nullptr ? dynamic_cast<const FoundationObject*>(foreign->get()) : nullptr;
  return object != nullptr ? object->get<Payload>() : nullptr;
}

// ------------------------------------------------ between the language and Foundation

/// A value as the object that a method returns: text as NSString, list as NSMutableArray, and so on. `missing value`
/// becomes NSNull, which is what stands for it in containers. `null` and what has no class stay as they are.
[[nodiscard]] applescript::Value bridged(const applescript::Value& value);
/// A value as a container keeps it: lists and records copied, objects shared, `missing value` kept.
[[nodiscard]] applescript::Value stored(const applescript::Value& value);
/// A stored value as the language has it, at every depth.
[[nodiscard]] applescript::Value unbridged(const applescript::Value& value);

/// Arguments as what a method wants, objects unwrapped. Throw ScriptError: −1700 for a value that has no such form,
/// −10000 where there is no such argument.
[[nodiscard]] std::string textArgument(const Arguments& arguments, std::size_t position);
[[nodiscard]] std::int64_t integerArgument(const Arguments& arguments, std::size_t position);
/// The entries of a record or dictionary, the items of a list or array, copied; −10000 for anything else.
[[nodiscard]] FoundationDictionary dictionaryArgument(const Arguments& arguments, std::size_t position);
[[nodiscard]] FoundationArray arrayArgument(const Arguments& arguments, std::size_t position);

// ------------------------------------------------ the classes

/// Containers are defined in ContainerClasses.cpp, texts and character sets in StringClass.cpp, the rest in
/// ValueClasses.cpp. Compared by address.
extern const FoundationClass objectClass;
extern const FoundationClass stringClass;
extern const FoundationClass dictionaryClass;
extern const FoundationClass mutableDictionaryClass;
extern const FoundationClass arrayClass;
extern const FoundationClass mutableArrayClass;
extern const FoundationClass jsonSerializationClass;
extern const FoundationClass dataClass;
extern const FoundationClass numberClass;
extern const FoundationClass nullClass;
extern const FoundationClass dateClass;
extern const FoundationClass characterSetClass;

} // namespace tabwright::scripting
