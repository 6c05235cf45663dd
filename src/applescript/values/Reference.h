#pragma once

#include "applescript/values/Value.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tabwright::applescript {

/// A place in the script itself: the item that a `repeat with … in` is at, or what `a reference to x` names.
///
/// Nearly everything looks through it to the value that is there now; `contents of r` asks for that value, and
/// `set contents of r to v` writes to the place. Only `is` and `is not` see the reference itself.
class Reference {
public:
  virtual ~Reference() = default;

  /// The value at the place now. Throws ScriptError −1728 when the place is gone (an item beyond the end of its list).
  [[nodiscard]] virtual Value value() const = 0;
  /// Throws ScriptError −10006 where nothing can be put.
  virtual void assign(Value value) const = 0;
  /// Source form of the place, such as `item 1 of {1, 2}`.
  [[nodiscard]] virtual std::string description() const = 0;
  /// The value that it keeps alive to read from: a list, a record, a variable's value; `nothing` for anything else.
  [[nodiscard]] virtual Value holder() const { return Value::nothing(); }
  /// The two name one place.
  [[nodiscard]] virtual bool isSamePlace(const Reference& other) const { return this == &other; }
  /// `is` looks through it too. A reference allows that once it has been handed to a handler: for the handler,
  /// its parameter is the value.
  [[nodiscard]] virtual bool comparesAsValue() const { return false; }
  /// The same place, as a handler's parameter.
  [[nodiscard]] virtual Value::ReferencePointer asParameter(const Value::ReferencePointer& self) const { return self; }
};

/// An item of a list, by its position (0-based here).
class ItemReference final : public Reference {
public:
  enum class Comparison { byPlace, byValue };
  ItemReference(Value::ListPointer list, std::size_t index, Comparison comparison = Comparison::byPlace)
      : list_(std::move(list)), index_(index), comparison_(comparison) {}

  [[nodiscard]] Value value() const override;
  void assign(Value value) const override;
  [[nodiscard]] std::string description() const override;
  [[nodiscard]] bool isSamePlace(const Reference& other) const override;
  [[nodiscard]] bool comparesAsValue() const override { return comparison_ == Comparison::byValue; }
  [[nodiscard]] Value::ReferencePointer asParameter(const Value::ReferencePointer& self) const override;
  [[nodiscard]] Value holder() const override { return list_; }

private:
  Value::ListPointer list_;
  std::size_t index_;
  Comparison comparison_;
};

/// A variable of a handler that some `a reference to` in it names: the variable lives here, so that the reference
/// outlasts the handler.
class VariableReference final : public Reference {
public:
  explicit VariableReference(std::string name) : name_(std::move(name)) {}
  ~VariableReference() override { release(std::move(value_)); }
  [[nodiscard]] Value value() const override;
  void assign(Value value) const override { value_ = std::move(value); }
  [[nodiscard]] std::string description() const override { return name_; }
  [[nodiscard]] Value holder() const override { return value_; }
  /// The variable itself; `nothing` while it isn't defined.
  [[nodiscard]] Value& variable() const { return value_; }

private:
  std::string name_;
  mutable Value value_ = Value::nothing();
};

/// A place that is found anew each time, such as a property of a script or a field of a record.
class ComputedReference final : public Reference {
public:
  using Read = std::function<Value()>;
  using Write = std::function<void(Value)>;
  ComputedReference(std::string description, Value holder, Read read, Write write)
      : description_(std::move(description)), holder_(std::move(holder)), read_(std::move(read)),
        write_(std::move(write)) {}
  [[nodiscard]] Value value() const override { return read_(); }
  void assign(Value value) const override { write_(std::move(value)); }
  [[nodiscard]] std::string description() const override { return description_; }
  [[nodiscard]] Value holder() const override { return holder_; }

private:
  std::string description_;
  Value holder_;
  Read read_;
  Write write_;
};

/// A class or constant behind the Objective-C bridge (`a reference to current application's NSString`): looked up when
/// it is first needed, and kept.
class BridgeReference final : public Reference {
public:
  using Find = std::function<Value()>;
  BridgeReference(std::string name, Find find) : name_(std::move(name)), find_(std::move(find)) {}
  [[nodiscard]] Value value() const override;
  void assign(Value value) const override;
  [[nodiscard]] std::string description() const override;
  [[nodiscard]] bool comparesAsValue() const override { return true; }

private:
  std::string name_;
  Find find_;
  mutable std::optional<Value> found_;
};

/// The value behind a reference, and behind the references it may lead to; any other value as it is.
[[nodiscard]] Value lookThrough(Value value);

enum class ForeignObjects { kept, unwrapped };
/// The value as others get it: no references at any depth, and no foreign objects if asked for. Shares what needs no
/// change. Throws ScriptError −2706 or −108 for a value nested too deeply or too large to walk.
[[nodiscard]] Value lookThroughDeep(Value value, ForeignObjects foreignObjects);

} // namespace tabwright::applescript
