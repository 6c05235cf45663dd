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

/// The part of the world that class methods need.
struct FoundationEnvironment {
  std::function<double()> now; ///< seconds since 1970-01-01 00:00:00 UTC
};

class FoundationObject;
using Arguments = std::vector<applescript::Value>;

struct FoundationMethod {
  std::string_view selector;
  applescript::Value (*call)(FoundationObject& self, const Arguments& arguments);
};

/// A class: its own methods, and those it inherits. Tables with static storage.
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

  [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
  /// Null when there is no such key. Valid until the dictionary changes.
  [[nodiscard]] const applescript::Value* find(std::string_view key) const;
  void set(applescript::Label key, applescript::Value value);
  void remove(std::string_view key);
  void reserve(std::size_t count) { entries_.reserve(count); }

private:
  [[nodiscard]] std::size_t positionOf(std::string_view key) const;

  std::vector<Entry> entries_;
  std::unordered_map<std::string, std::size_t> positions_; ///< kept once there are more than a few
};

struct FoundationArray {
  std::vector<applescript::Value> items;
};
struct FoundationData {
  std::string bytes;
};
struct FoundationNumber {
  applescript::Value value; ///< integer, real or boolean
};
struct FoundationDate {
  double secondsSince1970 = 0; ///< UTC
};
enum class CharacterSet { whitespace, whitespaceAndNewline, newline };
struct FoundationNull {};
/// The result of `alloc`: an object whose initializer has not run.
struct FoundationAllocated {};
/// The class itself.
struct FoundationMetaclass {
  std::shared_ptr<const FoundationEnvironment> environment;
};

using FoundationPayload =
    std::variant<FoundationMetaclass, FoundationAllocated, applescript::Text, FoundationDictionary, FoundationArray,
                 FoundationData, FoundationNumber, FoundationDate, CharacterSet, FoundationNull>;

/// An object or a class of Foundation.
class FoundationObject final : public applescript::ForeignObject,
                               public std::enable_shared_from_this<FoundationObject> {
public:
  FoundationObject(const FoundationClass& type, FoundationPayload payload)
      : type_(type), payload_(std::move(payload)) {}

  applescript::Value send(std::string_view selector, const Arguments& arguments) override;
  [[nodiscard]] std::optional<applescript::Value> unwrapped() const override;
  [[nodiscard]] std::string description() const override;

  [[nodiscard]] const FoundationClass& type() const { return type_; }
  template <class Payload>
  [[nodiscard]] Payload& as() {
    return std::get<Payload>(payload_);
  }
  template <class Payload>
  [[nodiscard]] const Payload* get() const {
    return std::get_if<Payload>(&payload_);
  }

private:
  const FoundationClass& type_;
  FoundationPayload payload_;
};

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

/// Arguments as what a method wants; errors −10000 name the selector.
[[nodiscard]] std::string textArgument(const Arguments& arguments, std::size_t position);
[[nodiscard]] std::int64_t integerArgument(const Arguments& arguments, std::size_t position);
/// The entries of a record or dictionary; −10000 for anything else.
[[nodiscard]] FoundationDictionary dictionaryArgument(const Arguments& arguments, std::size_t position);
[[nodiscard]] FoundationArray arrayArgument(const Arguments& arguments, std::size_t position);

// ------------------------------------------------ the classes

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
