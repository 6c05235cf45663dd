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
/// Nearly everything looks through it to the value that is there now; `contents of r` asks for that value, and `set
/// contents of r to v` writes to the place. Only `is` and `is not` see the reference itself.
///
/// Immutable but for the place that it leads to, and shared by the values that hold it. It keeps alive what it reads
/// from, so it may outlast the run, but leads to script objects only while their Script lives.
class Reference {
public:
  virtual ~Reference() = default;

  /// The value at the place now; may be a reference in turn. Throws ScriptError −1728 when the place is gone (an item
  /// beyond the end of its list), −2753 for a variable that isn't defined.
  [[nodiscard]] virtual Value value() const = 0;
  /// Puts the value there for all who share the place. Throws ScriptError −10006 where nothing can be put. Doesn't keep
  /// a list from coming to hold itself.
  virtual void assign(Value value) const = 0;
  /// Source form of the place, such as `item 1 of {1, 2}`. Never fails, also when the place is gone.
  [[nodiscard]] virtual std::string description() const = 0;
  /// The value that it keeps alive to read from: a list, a record, a variable's value; `nothing` for anything else.
  /// Whoever looks for rings follows it.
  [[nodiscard]] virtual Value holder() const { return Value::nothing(); }
  /// The two name one place.
  [[nodiscard]] virtual bool isSamePlace(const Reference& other) const { return this == &other; }
  /// `is` looks through it too. A reference allows that once it has been handed to a handler: for the handler,
  /// its parameter is the value.
  [[nodiscard]] virtual bool comparesAsValue() const { return false; }
  /// The same place, as a handler's parameter. `self` is this reference, for those that need no other.
  [[nodiscard]] virtual Value::ReferencePointer asParameter(const Value::ReferencePointer& self) const { return self; }
};

/// An item of a list, by its position (0-based here): when items before it come or go, it leads to another item.
class ItemReference final : public Reference {
public:
  /// The rule of `is`: the place itself, or the value there.
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
  /// Not defined at first. `name` is the spelling that messages show.
  explicit VariableReference(std::string name) : name_(std::move(name)) {}
  ~VariableReference() override { release(std::move(value_)); }
  [[nodiscard]] Value value() const override;
  void assign(Value value) const override { value_ = std::move(value); }
  [[nodiscard]] std::string description() const override { return name_; }
  [[nodiscard]] Value holder() const override { return value_; }
  /// The variable itself, for the frame that reads and sets it; `nothing` while it isn't defined. Valid as long as the
  /// reference.
  [[nodiscard]] Value& variable() const { return value_; }

private:
  std::string name_;
  mutable Value value_ = Value::nothing();
};

/// A place that is found anew each time, such as a property of a script or a field of a record.
class ComputedReference final : public Reference {
public:
  /// Both find the place anew and throw as `value` and `assign` do; they must hold on to all that they use.
  using Read = std::function<Value()>;
  using Write = std::function<void(Value)>;
  /// `description` and `holder` are what the functions of these names give.
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
/// it is first needed, and kept. A name that the bridge doesn't know fails then, not before. Of use only while the
/// bridge lives.
class BridgeReference final : public Reference {
public:
  using Find = std::function<Value()>;
  /// `find` throws ScriptError −1728 for a name that the bridge doesn't know, and is then called again the next time.
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

/// The value behind a reference, and behind the references it may lead to; any other value as it is, with the
/// references in it. Throws what the place throws, and −2706 where references lead in a ring.
[[nodiscard]] Value lookThrough(Value value);

/// Objects of the bridge are left in place, or replaced by the value of the language that they are, if any.
enum class ForeignObjects { kept, unwrapped };
/// The value as others get it: no references at any depth, and no foreign objects if asked for. Shares what needs no
/// change. Throws ScriptError −2706 or −108 for a value nested too deeply or too large to walk.
[[nodiscard]] Value lookThroughDeep(Value value, ForeignObjects foreignObjects);

} // namespace tabwright::applescript
