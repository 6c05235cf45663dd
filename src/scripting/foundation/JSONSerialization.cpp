// Writing walks the language's values and Foundation's objects as they are, and makes no tree of its own: the result of
// an action over a thousand tabs goes through here. Reading makes Foundation's containers, since a record of the
// language would lose keys that differ from others in case only.
#include "scripting/foundation/JSONSerialization.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Traversal.h"
#include "platform/JSONFailure.h"
#include "platform/JSONText.h"
#include "scripting/foundation/FoundationObject.h"
#include "scripting/model/JSONValue.h"

#include <boost/json/value.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tabwright::scripting {

using applescript::Label;
using applescript::Text;
using applescript::Value;
using platform::Slashes;
namespace errors = applescript::errors;

namespace {

applescript::ScriptError writeError(std::string_view what) {
  return errors::of(applescript::errorNumber::handlerFailed,
                    fmt::format("*** +[NSJSONSerialization dataWithJSONObject:options:error:]: {}", what));
}

/// The class under which Foundation would know a value that it can't write.
std::string_view foundationName(const Value& value) {
  if (value.is<applescript::Date>() || payloadOf<FoundationDate>(value) != nullptr)
    return "__NSTaggedDate";
  if (payloadOf<FoundationData>(value) != nullptr)
    return "NSConcreteData";
  return value.isNull() ? "null" : "NSAppleEventDescriptor";
}

class Writer {
public:
  explicit Writer(std::int64_t options)
      : isPretty_((options & jsonoptions::prettyPrinted) != 0), sortsKeys_((options & jsonoptions::sortedKeys) != 0),
        slashes_((options & jsonoptions::withoutEscapingSlashes) == 0 ? Slashes::escaped : Slashes::plain) {}

  void write(const Value& value, int level) {
    if (const auto* text = value.get<Text>())
      return writeText(text->utf8());
    if (const auto* boolean = value.get<bool>()) {
      text_ += *boolean ? "true" : "false";
    } else if (const auto* integer = value.get<std::int64_t>()) {
      char digits[24];
      text_.append(digits, std::to_chars(digits, digits + sizeof digits, *integer).ptr);
    } else if (const auto* real = value.get<double>()) {
      writeReal(*real);
    } else if (value.isMissing()) {
      text_ += "null";
    } else if (const auto* list = value.get<Value::ListPointer>()) {
      writeList((*list)->items, level);
    } else if (const auto* record = value.get<Value::RecordPointer>()) {
      writeFields((*record)->fields, level);
    } else if (value.is<Value::ReferencePointer>()) {
      // A reference leads to a value that may hold it.
      const applescript::Traversal bound;
      write(applescript::plainValue(value), level);
    } else {
      writeObject(value, level);
    }
  }

  std::string take() { return std::move(text_); }

private:
  void writeObject(const Value& value, int level) {
    if (const auto* text = payloadOf<Text>(value))
      writeText(text->utf8());
    else if (const auto* dictionary = payloadOf<FoundationDictionary>(value))
      writeFields(dictionary->entries(), level);
    else if (const auto* array = payloadOf<FoundationArray>(value))
      writeList(array->items, level);
    else if (const auto* number = payloadOf<FoundationNumber>(value))
      write(number->value, level);
    else if (payloadOf<FoundationNull>(value) != nullptr)
      text_ += "null";
    else
      throw writeError(fmt::format("Invalid type in JSON write ({})", foundationName(value)));
  }

  void startLine(int level) {
    if (!isPretty_)
      return;
    text_ += '\n';
    text_.append(2 * static_cast<std::size_t>(level), ' ');
  }

  /// Brackets around items that `writeItem` writes; an empty pair has an empty line inside.
  template <class Items, class WriteItem>
  void writeBracketed(char open, char close, const Items& items, int level, WriteItem writeItem) {
    const applescript::Traversal bound;
    text_ += open;
    bool isFirst = true;
    for (const auto& item : items) {
      if (!isFirst)
        text_ += ',';
      isFirst = false;
      startLine(level + 1);
      writeItem(item);
    }
    // An empty pair keeps its empty line, as Foundation's do.
    if (isFirst && isPretty_)
      text_ += '\n';
    startLine(level);
    text_ += close;
  }

  void writeList(const std::vector<Value>& items, int level) {
    writeBracketed('[', ']', items, level, [&](const Value& item) { write(item, level + 1); });
  }

  void writeFields(const std::vector<std::pair<Label, Value>>& fields, int level) {
    const auto writeField = [&](const std::pair<Label, Value>& field) {
      writeText(field.first.name);
      // Foundation puts a blank before the colon too.
      text_ += isPretty_ ? " : " : ":";
      write(field.second, level + 1);
    };
    if (!sortsKeys_)
      return writeBracketed('{', '}', fields, level, writeField);
    // Pointers, so that nothing is copied to be sorted.
    std::vector<const std::pair<Label, Value>*> sorted;
    sorted.reserve(fields.size());
    for (const auto& field : fields)
      sorted.push_back(&field);
    std::ranges::sort(sorted, {}, [](const auto* field) -> const std::string& { return field->first.name; });
    writeBracketed('{', '}', sorted, level, [&](const auto* field) { writeField(*field); });
  }

  void writeReal(double real) {
    if (!std::isfinite(real))
      throw writeError(fmt::format("Invalid number value ({}) in JSON write", std::isnan(real) ? "NaN" : "infinite"));
    char digits[400];
    // The shortest digits that are read back as the same number; an exponent where plain ones would be long.
    const double size = std::abs(real);
    const bool isPlain = real == 0 || (size >= 1e-4 && size < 1e17);
    const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    text_.append(digits, std::to_chars(digits, digits + sizeof digits, real, format).ptr);
  }

  void writeText(std::string_view text) { platform::appendJSONText(text_, text, slashes_); }

  bool isPretty_;
  bool sortsKeys_;
  Slashes slashes_;
  std::string text_;
};

/// Foundation writes these at the top; single values are fragments, which an option allows.
bool isContainer(const Value& value) {
  return value.is<Value::ListPointer>() || value.is<Value::RecordPointer>() ||
         payloadOf<FoundationDictionary>(value) != nullptr || payloadOf<FoundationArray>(value) != nullptr;
}

constexpr JSONContainers foundationContainers{
    .list = [](std::vector<Value> items) { return makeObject(mutableArrayClass, FoundationArray{std::move(items)}); },
    .record =
        [](std::vector<std::pair<Label, Value>> members) {
          FoundationDictionary dictionary;
          for (auto& [label, value] : members)
            dictionary.set(std::move(label), std::move(value));
          return makeObject(mutableDictionaryClass, std::move(dictionary));
        },
};

} // namespace

std::string jsonText(const Value& value, std::int64_t options) {
  if ((options & jsonoptions::fragmentsAllowed) == 0 && !isContainer(value))
    throw writeError("Invalid top-level type in JSON write");
  Writer writer(options);
  writer.write(value, 0);
  return writer.take();
}

bool isValidJSON(const Value& value) {
  try {
    return !jsonText(value, 0).empty();
  } catch (const applescript::ScriptError& error) {
    // Too deep or too long a value is no matter of what JSON can say.
    if (error.number() != applescript::errorNumber::handlerFailed)
      throw;
    return false;
  }
}

std::optional<Value> valueOfJSON(std::string_view json, std::int64_t options) {
  try {
    const boost::json::value parsed = platform::parseJSON(json);
    // Foundation reads a single value only where the options allow it.
    const bool isFragment = !parsed.is_object() && !parsed.is_array();
    if (isFragment && (options & jsonoptions::fragmentsAllowed) == 0)
      return std::nullopt;
    return valueOf(parsed, foundationContainers);
  } catch (const platform::JSONFailure&) {
    return std::nullopt;
  }
}

} // namespace tabwright::scripting
