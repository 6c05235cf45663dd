// NSString, and the character sets that it trims with. Lengths count UTF-16 units, as NSString's do. Texts are searched
// byte by byte, which UTF-8 allows; case and trimming, which need characters, go through ICU. Case follows no language,
// so a script does the same for every user.
#include "applescript/ScriptError.h"
#include "applescript/values/Errors.h"
#include "platform/Utf8.h"
#include "scripting/foundation/FoundationObject.h"

#include <fmt/core.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace tabwright::scripting {

using applescript::Text;
using applescript::Value;
namespace errors = applescript::errors;

namespace {

constexpr std::int64_t utf8Encoding = 4;

const std::string& content(FoundationObject& self) {
  return self.as<Text>().utf8();
}

Value string(std::string utf8) {
  return makeObject(stringClass, Text(std::move(utf8)));
}

icu::UnicodeString unicode(const std::string& utf8) {
  return icu::UnicodeString::fromUTF8(utf8);
}

Value fromUnicode(const icu::UnicodeString& text) {
  std::string utf8;
  text.toUTF8String(utf8);
  return string(std::move(utf8));
}

/// Texts are UTF-8 here, and are turned into nothing else.
void requireUTF8(std::int64_t encoding) {
  if (encoding != utf8Encoding)
    throw errors::of(applescript::errorNumber::handlerFailed,
                     fmt::format("Only NSUTF8StringEncoding (4) is known, not the encoding {}.", encoding));
}

Value initWithData(FoundationObject&, const Arguments& arguments) {
  requireUTF8(integerArgument(arguments, 1));
  const auto* data = payloadOf<FoundationData>(arguments[0]);
  // As with every initializer that fails, the result is nil.
  return data != nullptr && !platform::malformedByte(data->bytes) ? string(data->bytes) : Value::missing();
}

Value dataUsingEncoding(FoundationObject& self, const Arguments& arguments) {
  requireUTF8(integerArgument(arguments, 0));
  return makeObject(dataClass, FoundationData{content(self)});
}

Value components(FoundationObject& self, const Arguments& arguments) {
  const std::string separator = textArgument(arguments, 0);
  const std::string& text = content(self);
  FoundationArray parts;
  std::size_t from = 0;
  // An empty separator divides nothing.
  for (std::size_t at = separator.empty() ? std::string::npos : text.find(separator); at != std::string::npos;
       at = text.find(separator, from)) {
    parts.items.emplace_back(text.substr(from, at - from));
    from = at + separator.size();
  }
  parts.items.emplace_back(text.substr(from));
  return makeObject(arrayClass, std::move(parts));
}

Value replacing(FoundationObject& self, const Arguments& arguments) {
  const std::string sought = textArgument(arguments, 0);
  const std::string replacement = textArgument(arguments, 1);
  const std::string& text = content(self);
  // An empty text is found nowhere.
  if (sought.empty())
    return string(text);
  std::string result;
  std::size_t from = 0;
  for (std::size_t at = text.find(sought); at != std::string::npos; at = text.find(sought, from)) {
    result.append(text, from, at - from).append(replacement);
    from = at + sought.size();
  }
  return string(result.append(text, from));
}

bool isIn(CharacterSet set, UChar32 character) {
  // Foundation's newlines: U+000A to U+000D, U+0085, U+2028 and U+2029.
  const bool isNewline =
      (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 || character == 0x2029;
  const bool isWhitespace = character == '\t' || u_charType(character) == U_SPACE_SEPARATOR;
  switch (set) {
  case CharacterSet::whitespace:
    return isWhitespace;
  case CharacterSet::newline:
    return isNewline;
  case CharacterSet::whitespaceAndNewline:
    return isWhitespace || isNewline;
  }
  return false;
}

Value trimming(FoundationObject& self, const Arguments& arguments) {
  const auto* set = payloadOf<CharacterSet>(arguments[0]);
  if (set == nullptr)
    throw errors::of(applescript::errorNumber::handlerFailed, "Trimming takes a character set.");
  const icu::UnicodeString text = unicode(content(self));
  // Steps go over whole characters, so no surrogate pair is cut in two.
  std::int32_t begin = 0;
  std::int32_t end = text.length();
  while (begin < end && isIn(*set, text.char32At(begin)))
    begin = text.moveIndex32(begin, 1);
  while (end > begin && isIn(*set, text.char32At(text.moveIndex32(end, -1))))
    end = text.moveIndex32(end, -1);
  return fromUnicode(text.tempSubStringBetween(begin, end));
}

constexpr FoundationMethod classMethods[]{
    {"stringWithString:", [](FoundationObject&, const Arguments& a) { return string(textArgument(a, 0)); }},
    {"string", [](FoundationObject&, const Arguments&) { return string({}); }},
};

constexpr FoundationMethod initializers[]{
    {"init", [](FoundationObject&, const Arguments&) { return string({}); }},
    {"initWithString:", [](FoundationObject&, const Arguments& a) { return string(textArgument(a, 0)); }},
    {"initWithData:encoding:", initWithData},
};

constexpr FoundationMethod methods[]{
    {"componentsSeparatedByString:", components},
    {"containsString:",
     [](FoundationObject& self, const Arguments& a) {
       return Value(content(self).find(textArgument(a, 0)) != std::string::npos);
     }},
    {"dataUsingEncoding:", dataUsingEncoding},
    {"hasPrefix:",
     [](FoundationObject& self, const Arguments& a) { return Value(content(self).starts_with(textArgument(a, 0))); }},
    {"hasSuffix:",
     [](FoundationObject& self, const Arguments& a) { return Value(content(self).ends_with(textArgument(a, 0))); }},
    {"isEqualToString:",
     [](FoundationObject& self, const Arguments& a) { return Value(content(self) == textArgument(a, 0)); }},
    {"length", [](FoundationObject& self,
                  const Arguments&) { return Value(static_cast<std::int64_t>(unicode(content(self)).length())); }},
    {"lowercaseString",
     [](FoundationObject& self, const Arguments&) {
       return fromUnicode(unicode(content(self)).toLower(icu::Locale::getRoot()));
     }},
    {"stringByAppendingString:",
     [](FoundationObject& self, const Arguments& a) { return string(content(self) + textArgument(a, 0)); }},
    {"stringByReplacingOccurrencesOfString:withString:", replacing},
    {"stringByTrimmingCharactersInSet:", trimming},
    {"uppercaseString",
     [](FoundationObject& self, const Arguments&) {
       return fromUnicode(unicode(content(self)).toUpper(icu::Locale::getRoot()));
     }},
};

template <CharacterSet set>
Value characterSet(FoundationObject&, const Arguments&) {
  return makeObject(characterSetClass, set);
}

constexpr FoundationMethod characterSetMethods[]{
    {"newlineCharacterSet", characterSet<CharacterSet::newline>},
    {"whitespaceAndNewlineCharacterSet", characterSet<CharacterSet::whitespaceAndNewline>},
    {"whitespaceCharacterSet", characterSet<CharacterSet::whitespace>},
};

} // namespace

constinit const FoundationClass stringClass{"NSString", &objectClass, classMethods, initializers, methods};
constinit const FoundationClass characterSetClass{"NSCharacterSet", &objectClass, characterSetMethods};

} // namespace tabwright::scripting
