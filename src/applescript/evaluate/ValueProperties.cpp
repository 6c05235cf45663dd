// A switch over property codes for each kind of value. Fields of records and properties of script objects come first,
// so that a field `length` hides the number of fields; `class` comes last, and every value has it.
#include "applescript/evaluate/ValueProperties.h"

#include "applescript/evaluate/ScriptMembers.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Dates.h"

#include <unicode/utf8.h>

#include <string>
#include <vector>

namespace tabwright::applescript {

namespace {

Value idOf(const std::string& text) {
  std::vector<Value> codePoints;
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  for (int64_t at = 0; at < size;) {
    UChar32 c = 0;
    U8_NEXT_OR_FFFD(bytes, at, size, c);
    codePoints.emplace_back(std::int64_t{c});
  }
  // One code point is an integer; several, also those of one character, are a list.
  return codePoints.size() == 1 ? codePoints.front() : Value::list(std::move(codePoints));
}

// The quoting of the POSIX shell: a quotation mark can only stand outside of the quotes.
std::string quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text)
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::optional<Value> textProperty(const Text& text, FourCharCode property, CharacterIndex& characters) {
  switch (property) {
  case codes::length:
    return static_cast<std::int64_t>(characters.count(text));
  case codes::id:
    return idOf(text.utf8());
  case codes::quotedForm:
    return quoted(text.utf8());
  // `text of t` and the like: the text itself.
  case codes::text:
  case codes::string:
  case codes::unicodeText:
    return Value(text);
  default:
    return {};
  }
}

std::optional<Value> listProperty(const std::vector<Value>& items, FourCharCode property) {
  switch (property) {
  case codes::length:
    return static_cast<std::int64_t>(items.size());
  case codes::reverse:
    return Value::list({items.rbegin(), items.rend()});
  case codes::rest:
    if (items.empty())
      return {};
    return Value::list({items.begin() + 1, items.end()});
  default:
    return {};
  }
}

} // namespace

std::optional<Value> propertyOfValue(const Value& value, const Label& property, CharacterIndex& characters) {
  if (const auto* record = value.get<Value::RecordPointer>()) {
    if (const Value* field = (*record)->find(property))
      return *field;
    if (property.code == codes::length)
      return static_cast<std::int64_t>((*record)->fields.size());
  } else if (const auto* script = value.get<Value::ScriptPointer>()) {
    if (const Value* own = findProperty(**script, property); own && !own->isNothing())
      return *own;
    if (property.code == codes::name && !(*script)->name().empty())
      return (*script)->name();
    if (property.code == codes::parent && !(*script)->parent.isNothing())
      return (*script)->parent;
  } else if (const auto* text = value.get<Text>()) {
    if (auto found = textProperty(*text, property.code, characters))
      return found;
  } else if (const auto* list = value.get<Value::ListPointer>()) {
    if (auto found = listProperty((*list)->items, property.code))
      return found;
  } else if (const auto* date = value.get<Date>()) {
    if (auto found = dateProperty(*date, property.code))
      return found;
  } else if (const auto* constant = value.get<Value::EnumeratorPointer>();
             constant && (*constant)->code == codes::appleScript) {
    if (property.code == codes::version)
      return "2.8";
    if (property.code == codes::name)
      return "AppleScript";
  }
  if (property.code == codes::className)
    return classOf(value);
  return {};
}

} // namespace tabwright::applescript
