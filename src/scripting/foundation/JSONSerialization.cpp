// Writing walks the language's values and Foundation's objects as they are, and makes no tree of its own: the result of
// an action over a thousand tabs goes through here. Reading leaves the parsing to Boost.JSON.
#include "scripting/foundation/JSONSerialization.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Traversal.h"
#include "scripting/foundation/FoundationObject.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>
#include <fmt/core.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tabwright::scripting {

using applescript::Label;
using applescript::Text;
using applescript::Value;
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

constexpr auto plainBytes = [] {
  std::array<bool, 256> plain{};
  for (std::size_t byte = 0x20; byte < 0x80; ++byte)
    plain[byte] = byte != '"' && byte != '\\';
  return plain;
}();

class Writer {
public:
  explicit Writer(std::int64_t options)
      : isPretty_((options & jsonoptions::prettyPrinted) != 0), sortsKeys_((options & jsonoptions::sortedKeys) != 0),
        escapesSlashes_((options & jsonoptions::withoutEscapingSlashes) == 0) {}

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
      text_ += isPretty_ ? " : " : ":";
      write(field.second, level + 1);
    };
    if (!sortsKeys_)
      return writeBracketed('{', '}', fields, level, writeField);
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
    const double size = std::abs(real);
    const bool isPlain = real == 0 || (size >= 1e-4 && size < 1e17);
    const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    text_.append(digits, std::to_chars(digits, digits + sizeof digits, real, format).ptr);
  }

  void writeText(std::string_view text) {
    text_ += '"';
    std::size_t from = 0;
    for (std::size_t at = 0; at < text.size();) {
      const auto byte = static_cast<unsigned char>(text[at]);
      if (isPlain(byte)) {
        ++at;
      } else if (byte < 0x80) {
        text_.append(text, from, at - from);
        writeEscaped(byte);
        from = ++at;
      } else {
        auto next = static_cast<std::int32_t>(at);
        UChar32 character = 0;
        U8_NEXT(text.data(), next, static_cast<std::int32_t>(text.size()), character);
        if (character < 0) { // ill-formed bytes can't stand in JSON
          text_.append(text, from, at - from).append("\xEF\xBF\xBD");
          from = static_cast<std::size_t>(next);
        }
        at = static_cast<std::size_t>(next);
      }
    }
    text_.append(text, from);
    text_ += '"';
  }

  /// Whether a byte stands for itself.
  bool isPlain(unsigned char byte) const { return plainBytes[byte] && (byte != '/' || !escapesSlashes_); }

  void writeEscaped(unsigned char byte) {
    constexpr std::string_view special = "/\"\\\n\t\r\b\f";
    constexpr std::string_view letters = "/\"\\ntrbf";
    if (const auto position = special.find(static_cast<char>(byte)); position != std::string_view::npos)
      (text_ += '\\') += letters[position];
    else
      text_ += fmt::format("\\u{:04x}", byte);
  }

  bool isPretty_;
  bool sortsKeys_;
  bool escapesSlashes_;
  std::string text_;
};

bool isContainer(const Value& value) {
  return value.is<Value::ListPointer>() || value.is<Value::RecordPointer>() ||
         payloadOf<FoundationDictionary>(value) != nullptr || payloadOf<FoundationArray>(value) != nullptr;
}

Value fromJSON(const boost::json::value& json) {
  switch (json.kind()) {
  case boost::json::kind::null:
    return Value::missing();
  case boost::json::kind::bool_:
    return Value(json.get_bool());
  case boost::json::kind::int64:
    return Value(json.get_int64());
  case boost::json::kind::uint64:
    return Value(static_cast<double>(json.get_uint64())); // beyond what an integer holds
  case boost::json::kind::double_:
    return Value(json.get_double());
  case boost::json::kind::string:
    return Value(std::string(json.get_string().data(), json.get_string().size()));
  case boost::json::kind::array: {
    FoundationArray array;
    for (const auto& item : json.get_array())
      array.items.push_back(fromJSON(item));
    return makeObject(mutableArrayClass, std::move(array));
  }
  case boost::json::kind::object: {
    FoundationDictionary dictionary;
    for (const auto& member : json.get_object())
      dictionary.set(Label{0, std::string(member.key().data(), member.key().size())}, fromJSON(member.value()));
    return makeObject(mutableDictionaryClass, std::move(dictionary));
  }
  }
  return Value::missing();
}

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
    if (error.number() != applescript::errorNumber::handlerFailed)
      throw;
    return false;
  }
}

std::optional<Value> valueOfJSON(std::string_view json, std::int64_t options) {
  boost::json::error_code error;
  boost::json::parse_options limits;
  limits.max_depth = 512;
  const boost::json::value parsed =
      boost::json::parse(boost::json::string_view(json.data(), json.size()), error, {}, limits);
  const bool isFragment = !parsed.is_object() && !parsed.is_array();
  if (error || (isFragment && (options & jsonoptions::fragmentsAllowed) == 0))
    return std::nullopt;
  return fromJSON(parsed);
}

} // namespace tabwright::scripting
