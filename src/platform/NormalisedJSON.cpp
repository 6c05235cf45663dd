// The data is brought to UTF-8 and parsed, for its errors only: the tree would keep neither the digits of numbers nor
// the first of equal keys. Then the text is walked token by token. A member whose key has been seen is written and cut
// off again.
#include "platform/NormalisedJSON.h"

#include "platform/JSONFailure.h"
#include "platform/JSONText.h"

#include <boost/json/value.hpp>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <set>

namespace tabwright::platform {

namespace {

constexpr std::string_view blanks = " \t\r\n";

struct Encoding {
  std::size_t unitSize; ///< in bytes
  bool isBigEndian;
  std::size_t markSize; ///< of the byte order mark
};

Encoding encodingOf(std::string_view data) {
  using namespace std::string_view_literals;
  constexpr struct {
    std::string_view mark;
    Encoding encoding;
  } marks[]{{"\xEF\xBB\xBF"sv, {1, false, 3}},
            {"\0\0\xFE\xFF"sv, {4, true, 4}},
            {"\xFF\xFE\0\0"sv, {4, false, 4}}, // ahead of the mark that it begins with
            {"\xFE\xFF"sv, {2, true, 2}},
            {"\xFF\xFE"sv, {2, false, 2}}};
  for (const auto& [mark, encoding] : marks) {
    if (data.starts_with(mark))
      return encoding;
  }
  // A document begins with a character of ASCII, whose other bytes are zero in the wider encodings.
  const auto isZero = [&](std::size_t index) { return index < data.size() && data[index] == '\0'; };
  if (data.size() >= 4 && isZero(0) && isZero(1) && isZero(2))
    return {4, true, 0};
  if (data.size() >= 4 && isZero(1) && isZero(2) && isZero(3))
    return {4, false, 0};
  if (isZero(0))
    return {2, true, 0};
  if (isZero(1))
    return {2, false, 0};
  return {1, false, 0};
}

std::string utf8Of(std::string_view data) {
  const Encoding encoding = encodingOf(data);
  data.remove_prefix(encoding.markSize);
  if (encoding.unitSize == 1)
    return std::string(data); // its bytes are looked at by the parser

  std::string text;
  std::optional<UChar32> lead;
  for (; !data.empty(); data.remove_prefix(encoding.unitSize)) {
    if (data.size() < encoding.unitSize)
      throw JSONFailure("bytes that are no text", text);
    std::uint32_t unit = 0;
    for (std::size_t index = 0; index < encoding.unitSize; ++index) {
      const std::size_t position = encoding.isBigEndian ? index : encoding.unitSize - 1 - index;
      unit = unit << 8 | static_cast<unsigned char>(data[position]);
    }
    auto character = static_cast<UChar32>(unit);
    if (encoding.unitSize == 2) {
      // A second half without a first one, or a first one without its second.
      if (lead.has_value() != U16_IS_TRAIL(character))
        throw JSONFailure("half of a surrogate pair", text);
      if (U16_IS_LEAD(character)) {
        lead = character;
        continue;
      }
      if (lead)
        character = U16_GET_SUPPLEMENTARY(*lead, character);
      lead.reset();
    }
    std::uint8_t bytes[U8_MAX_LENGTH];
    std::int32_t length = 0;
    UBool isFailed = false;
    U8_APPEND(bytes, length, U8_MAX_LENGTH, character, isFailed);
    if (isFailed)
      throw JSONFailure("bytes that are no text", text);
    text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
  }
  if (lead)
    throw JSONFailure("half of a surrogate pair", text);
  return text;
}

// The text has been parsed by then, so no step looks for what can't come.
class Normaliser {
public:
  /// `text` is known to be JSON.
  explicit Normaliser(std::string_view text) : text_(text) {}

  std::string output() {
    writeValue();
    return std::move(output_);
  }

private:
  void writeValue() {
    const char first = next();
    if (first == '{' || first == '[')
      writeMembers(first, first == '{' ? '}' : ']');
    else if (first == '"')
      appendJSONText(output_, takeText(), Slashes::escaped);
    else
      output_ += takeWord();
  }

  void writeMembers(char open, char close) {
    // Keys are compared as texts: “a” and its escape \u0061 are one key.
    std::set<std::string> keys;
    output_ += open;
    ++at_;
    while (next() != close) {
      if (text_[at_] == ',')
        ++at_;
      // To here the output is cut back where the member doesn't count. Its value has to be walked all the same, to find
      // its end.
      const std::size_t before = output_.size();
      if (output_.back() != open)
        output_ += ',';
      bool isNew = true;
      if (open == '{') {
        const std::string key = takeText();
        isNew = keys.insert(key).second;
        appendJSONText(output_, key, Slashes::escaped);
        output_ += ':';
        next();
        ++at_;
      }
      writeValue();
      if (!isNew)
        output_.resize(before);
    }
    output_ += close;
    ++at_;
  }

  /// Goes on to the next character that is none of the layout.
  char next() {
    at_ = text_.find_first_not_of(blanks, at_);
    return text_[at_];
  }

  std::string takeText() {
    next();
    const std::size_t start = at_++;
    for (; text_[at_] != '"'; ++at_) {
      if (text_[at_] == '\\')
        ++at_;
    }
    ++at_;
    // Escapes are many, and the parser knows them: its text is written anew by the one writer of JSON texts.
    return std::string(parseJSON(text_.substr(start, at_ - start)).get_string());
  }

  std::string_view takeWord() {
    const std::size_t start = at_;
    // A number, true, false or null: all end with what can't be in them.
    at_ = text_.find_first_of(",]} \t\r\n", start);
    const std::string_view word = text_.substr(start, at_ - start);
    const boost::json::value value = parseJSON(word);
    // The parser may take such a number for infinity, which no JSON can stand for.
    if (value.is_double() && !std::isfinite(value.get_double()))
      throw JSONFailure("a number that is too large", text_.substr(0, at_));
    return word;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::string output_;
};

} // namespace

std::string normalisedJSON(std::string_view data) {
  const std::string text = utf8Of(data);
  const std::size_t start = text.find_first_not_of(blanks);
  if (start == std::string::npos)
    throw JSONFailure("it is empty", text);
  // The parser would take any value.
  if (text[start] != '{' && text[start] != '[')
    throw JSONFailure("an object or a list must stand at the top", std::string_view(text).substr(0, start));
  static_cast<void>(parseJSON(text));
  return Normaliser(text).output();
}

} // namespace tabwright::platform
