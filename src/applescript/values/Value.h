#pragma once

#include "applescript/terminology/FourCharCode.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace tabwright::applescript {

class Value;
struct List;
struct Record;
struct ObjectSpecifier;
class Reference;
class ScriptObject;
class ForeignObject;

/// Immutable UTF-8 text, shared between copies: passing a page's HTML around costs a pointer. A default-made one is
/// empty.
class Text {
public:
  Text() = default;
  /// Not checked: where characters matter, ill-formed bytes are read as U+FFFD.
  explicit Text(std::string utf8) : shared_(std::make_shared<std::string>(std::move(utf8))) {}
  /// Valid while a copy of this text is around; changed by `appendUnshared` alone.
  [[nodiscard]] const std::string& utf8() const { return shared_ ? *shared_ : emptyText(); }

  /// Both are copies of one text, so that they are equal without a look at their bytes.
  [[nodiscard]] bool isSameObject(const Text& other) const { return shared_ == other.shared_; }
  /// Grows this text where it is, when no copy of it is around to see that; false, and nothing done, else.
  [[nodiscard]] bool appendUnshared(std::string_view utf8) {
    if (!shared_ || shared_.use_count() != 1)
      return false;
    shared_->append(utf8);
    return true;
  }

private:
  static const std::string& emptyText() {
    static const std::string empty;
    return empty;
  }
  std::shared_ptr<std::string> shared_; // changed by appendUnshared only
};

/// A date as the language has it: seconds since 2001-01-01 00:00:00 on the wall clock of the local time zone, fractions
/// included. Dates.h takes it apart.
struct Date {
  double seconds = 0;
};

/// The name of a class, such as `text`, `list`, `window`. `words` is what a dictionary calls it; without words it is
/// shown by its code. Classes are compared by their codes (`sameClass`).
struct ClassName {
  FourCharCode code = 0;
  std::string words;
};

/// A constant of an enumeration, such as `command down`, `yes`, `ignoring case`. Constants are equal when their codes
/// are.
struct Enumerator {
  FourCharCode code = 0;
  std::string words;
};

/// A value of the language: cheap to copy.
///
/// Lists and records are shared by their copies, as `set a to b` shares them; `deepCopy()` is what `copy` does. Script
/// objects and objects of the bridge are shared, too; all other kinds are immutable. A default-made Value is `missing
/// value`.
///
///     if (const auto* list = value.get<Value::ListPointer>())
///       (*list)->items.push_back(3); // seen by all who hold the list
///
/// Two kinds are not values yet but ways to one:
/// - an **object specifier** names something in an application, and is resolved by the application when an event needs
///   it (ObjectSpecifier.h);
/// - a **reference** names a place in the script itself, such as the item that a `repeat with … in` is at, and is
///   looked through by nearly everything (Reference.h).
///
/// `nothing` is what a statement or handler without a result leaves: it is the result of `Interpreter::run` and `call`
/// then, and is never found in a list, a record, a parameter or a message.
///
/// Not safe to use from two threads at once when lists or records are shared between them.
class Value {
public:
  /// `missing value`, `null`, and the absence of a value.
  struct MissingValue {};
  struct Null {};
  struct Nothing {};
  /// The kinds that copies of a value share. None of these pointers is ever null in a Value.
  using ListPointer = std::shared_ptr<List>;
  using RecordPointer = std::shared_ptr<Record>;
  using SpecifierPointer = std::shared_ptr<const ObjectSpecifier>;
  using ReferencePointer = std::shared_ptr<const Reference>;
  using ScriptPointer = std::shared_ptr<ScriptObject>;
  using ForeignPointer = std::shared_ptr<ForeignObject>;
  using ClassPointer = std::shared_ptr<const ClassName>;
  using EnumeratorPointer = std::shared_ptr<const Enumerator>;

  Value() = default;
  /// A value of the kind that is given: integers are of 64 bits, a whole real stays a real, texts are UTF-8.
  Value(bool value) : storage_(Trivial(value)) {}
  Value(int value) : storage_(Trivial(std::int64_t{value})) {}
  Value(std::int64_t value) : storage_(Trivial(value)) {}
  Value(double value) : storage_(Trivial(value)) {}
  Value(Text value) : storage_(std::move(value)) {}
  Value(std::string utf8) : storage_(Text(std::move(utf8))) {}
  Value(std::string_view utf8) : storage_(Text(std::string(utf8))) {}
  Value(const char* utf8) : storage_(Text(std::string(utf8))) {}
  Value(Date value) : storage_(Trivial(value)) {}
  Value(ClassName value) : storage_(std::make_shared<const ClassName>(std::move(value))) {}
  Value(Enumerator value) : storage_(std::make_shared<const Enumerator>(std::move(value))) {}
  Value(ListPointer value) : storage_(std::move(value)) {}
  Value(RecordPointer value) : storage_(std::move(value)) {}
  Value(SpecifierPointer value) : storage_(std::move(value)) {}
  Value(ReferencePointer value) : storage_(std::move(value)) {}
  Value(ScriptPointer value) : storage_(std::move(value)) {}
  Value(ForeignPointer value) : storage_(std::move(value)) {}
  Value(ClassPointer value) : storage_(std::move(value)) {}
  Value(EnumeratorPointer value) : storage_(std::move(value)) {}

  static Value missing() { return {}; }
  static Value null() {
    Value value;
    value.storage_ = Trivial(Null{});
    return value;
  }
  static Value nothing() {
    Value value;
    value.storage_ = Trivial(Nothing{});
    return value;
  }
  /// A new list, which nobody else holds.
  static Value list(std::vector<Value> items);

  /// Exactly one kind fits each value: an integer is no `double`, a date no number.
  template <class Kind>
  [[nodiscard]] bool is() const {
    return get<Kind>() != nullptr;
  }
  /// The value as one of its kinds: the types that the constructors take, and the three without a content. Null when it
  /// is of another kind.
  template <class Kind>
  [[nodiscard]] const Kind* get() const {
    return find<Kind>(storage_);
  }
  template <class Kind>
  [[nodiscard]] Kind* get() {
    return find<Kind>(storage_);
  }
  /// Calls `visitor` with what the value is, by const reference, and gives what it gives. The visitor must take every
  /// kind that `get` names.
  template <class Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    const auto unfold = [&visitor](const auto& held) -> decltype(auto) {
      if constexpr (std::is_same_v<decltype(held), const Trivial&>)
        return std::visit(visitor, held);
      else
        return visitor(held);
    };
    return std::visit(unfold, storage_);
  }

  [[nodiscard]] bool isMissing() const { return is<MissingValue>(); }
  [[nodiscard]] bool isNull() const { return is<Null>(); }
  [[nodiscard]] bool isNothing() const { return is<Nothing>(); }
  /// The text's bytes, or null when the value is no text.
  [[nodiscard]] const std::string* text() const {
    const auto* text = get<Text>();
    return text ? &text->utf8() : nullptr;
  }

  /// Lists and records at every depth are made anew; everything else is shared. Throws ScriptError −2706 or −108 for
  /// a value nested too deeply or too large to walk.
  [[nodiscard]] Value deepCopy() const;

private:
  // Values are copied and let go of all the time. What has no destructor is one alternative of the storage, so that a
  // copy of it is one of bytes, and so that few alternatives are left: the standard library jumps through a table of
  // functions for each copy and destruction of a variant that has more than eleven.
  using Trivial = std::variant<MissingValue, Null, Nothing, bool, std::int64_t, double, Date>;
  using Storage = std::variant<Trivial, Text, ListPointer, RecordPointer, SpecifierPointer, ReferencePointer,
                               ScriptPointer, ForeignPointer, ClassPointer, EnumeratorPointer>;
  static_assert(std::is_trivially_copyable_v<Trivial>);

  template <class Kind, class Held>
  static auto find(Held& storage) {
    if constexpr (std::is_trivially_copyable_v<Kind>) {
      auto* trivial = std::get_if<Trivial>(&storage);
      return trivial ? std::get_if<Kind>(trivial) : nullptr;
    } else {
      return std::get_if<Kind>(&storage);
    }
  }

  Storage storage_;
};

/// Lets go of a value, and of what only it holds, without recursing however deep that is nested. For the destructors of
/// whatever holds values. `value` isn't to be used afterwards.
void release(Value&& value) noexcept;

/// The items of a list, shared by all values that hold it: a change is seen by all of them. 1-based in the language,
/// 0-based here. An item is never `nothing`.
struct List {
  std::vector<Value> items;

  List() = default;
  explicit List(std::vector<Value> items) : items(std::move(items)) {}
  List(const List&) = delete;
  List& operator=(const List&) = delete;
  /// Lists in lists may be nested without bound; taking them down doesn't recurse.
  ~List();
};

/// A label of a record: a dictionary's property (its code), or a name of the script's own (code 0). Labels are equal
/// when their codes are, or else when their names are, ignoring case; `name` keeps the spelling first shown.
struct Label {
  FourCharCode code = 0;
  std::string name;

  /// Names are compared as names of scripts are (`sameName`).
  [[nodiscard]] bool sameAs(const Label& other) const;
};

/// The fields of a record in order, shared by all values that hold it. Labels are unique.
struct Record {
  std::vector<std::pair<Label, Value>> fields;

  Record() = default;
  /// The labels must be unique already.
  explicit Record(std::vector<std::pair<Label, Value>> fields) : fields(std::move(fields)) {}
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;
  ~Record();

  /// The field of that label; null when there is none. Valid until the record changes.
  [[nodiscard]] Value* find(const Label& label);
  [[nodiscard]] const Value* find(const Label& label) const;
  /// Replaces the field's value, or adds the field at the end.
  void set(const Label& label, Value value);
};

} // namespace tabwright::applescript
