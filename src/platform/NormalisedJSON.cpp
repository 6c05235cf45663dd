// One pass: Boost.JSON's parser calls a writer for each token. A member whose key has been seen is written and then cut
// off again. First the data is brought to UTF-8.
#include "platform/NormalisedJSON.h"

#include "platform/JSONFailure.h"

#include <boost/json/basic_parser_impl.hpp>
#include <fmt/core.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace tabwright::platform {

namespace {

using boost::json::error_code;

constexpr std::size_t deepestNesting = 512;

[[noreturn]] void fail(std::string reason, std::string_view textBefore) {
  const std::size_t lineStart = textBefore.rfind('\n') + 1; // of npos: 0
  const auto isFirstByte = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
  throw JSONFailure(std::move(reason), 1 + static_cast<std::size_t>(std::ranges::count(textBefore, '\n')),
                    1 + static_cast<std::size_t>(std::ranges::count_if(textBefore.substr(lineStart), isFirstByte)));
}

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
      fail("bytes that are no text", text);
    std::uint32_t unit = 0;
    for (std::size_t index = 0; index < encoding.unitSize; ++index) {
      const std::size_t position = encoding.isBigEndian ? index : encoding.unitSize - 1 - index;
      unit = unit << 8 | static_cast<unsigned char>(data[position]);
    }
    auto character = static_cast<UChar32>(unit);
    if (encoding.unitSize == 2) {
      if (lead.has_value() != U16_IS_TRAIL(character))
        fail("half of a surrogate pair", text);
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
      fail("bytes that are no text", text);
    text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
  }
  if (lead)
    fail("half of a surrogate pair", text);
  return text;
}

/// The calls of the parser. The names are the parser's.
class Writer {
public:
  static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
  static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
  static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
  static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

  std::string output;

  bool on_document_begin(error_code&) { return true; }
  bool on_document_end(error_code&) { return true; }
  bool on_object_begin(error_code&) { return open('{'); }
  bool on_object_end(std::size_t, error_code&) { return close('}'); }
  bool on_array_begin(error_code&) { return open('['); }
  bool on_array_end(std::size_t, error_code&) { return close(']'); }

  bool on_key_part(boost::json::string_view part, std::size_t, error_code&) { return take(part); }
  bool on_key(boost::json::string_view part, std::size_t, error_code&) {
    take(part);
    Level& level = levels_.back();
    if (!level.keys.insert(text_).second)
      level.endOfWanted = output.size();
    separate();
    writeText();
    output += ':';
    return true;
  }

  bool on_string_part(boost::json::string_view part, std::size_t, error_code&) { return take(part); }
  bool on_string(boost::json::string_view part, std::size_t, error_code&) {
    take(part);
    separate();
    writeText();
    return finishValue();
  }

  bool on_number_part(boost::json::string_view part, error_code&) {
    number_.append(part.data(), part.size());
    return true;
  }
  bool on_int64(std::int64_t, boost::json::string_view digits, error_code&) { return writeNumber(digits); }
  bool on_uint64(std::uint64_t, boost::json::string_view digits, error_code&) { return writeNumber(digits); }
  bool on_double(double value, boost::json::string_view digits, error_code& error) {
    if (std::isfinite(value))
      return writeNumber(digits);
    error = boost::json::error::not_exact;
    return false;
  }
  bool on_bool(bool value, error_code&) { return writePlain(value ? "true" : "false"); }
  bool on_null(error_code&) { return writePlain("null"); }
  bool on_comment_part(boost::json::string_view, error_code&) { return true; }
  bool on_comment(boost::json::string_view, error_code&) { return true; }

private:
  struct Level {
    std::set<std::string> keys;
    std::optional<std::size_t> endOfWanted; ///< where the member that isn't wanted begins
  };

  bool take(boost::json::string_view part) {
    text_.append(part.data(), part.size());
    return true;
  }

  bool open(char bracket) {
    separate();
    output += bracket;
    levels_.emplace_back();
    return true;
  }

  bool close(char bracket) {
    output += bracket;
    levels_.pop_back();
    return finishValue();
  }

  // A comma, unless the value or member is the first of its level, or the value of a member.
  void separate() {
    if (!output.empty() && output.back() != '{' && output.back() != '[' && output.back() != ':')
      output += ',';
  }

  bool finishValue() {
    if (levels_.empty() || !levels_.back().endOfWanted)
      return true;
    output.resize(*levels_.back().endOfWanted);
    levels_.back().endOfWanted.reset();
    return true;
  }

  bool writePlain(std::string_view token) {
    separate();
    output += token;
    return finishValue();
  }

  bool writeNumber(boost::json::string_view digits) {
    number_.append(digits.data(), digits.size());
    writePlain(number_);
    number_.clear();
    return true;
  }

  void writeText() {
    constexpr std::string_view special = "/\"\\\n\t\r\b\f";
    constexpr std::string_view letters = "/\"\\ntrbf";
    output += '"';
    for (const char byte : text_) {
      if (const auto position = special.find(byte); position != std::string_view::npos)
        (output += '\\') += letters[position];
      else if (static_cast<unsigned char>(byte) < 0x20)
        output += fmt::format("\\u{:04x}", byte);
      else
        output += byte;
    }
    output += '"';
    text_.clear();
  }

  std::vector<Level> levels_;
  std::string text_;   // of the key or text that is being read
  std::string number_; // its digits so far
};

std::string reasonOf(const error_code& code) {
  using boost::json::error;
  switch (static_cast<error>(code.value())) {
  case error::incomplete:
    return "it ends too early";
  case error::too_deep:
    return fmt::format("more than {} levels", deepestNesting);
  case error::exponent_overflow:
  case error::not_exact:
    return "a number that is too large";
  case error::illegal_leading_surrogate:
  case error::illegal_trailing_surrogate:
  case error::expected_utf16_escape:
    return "half of a surrogate pair";
  case error::expected_hex_digit:
    return "an escape without its four hexadecimal digits";
  default:
    return "something that can't stand here";
  }
}

} // namespace

std::string normalisedJSON(std::string_view data) {
  const std::string text = utf8Of(data);
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string::npos)
    fail("it is empty", text);
  if (text[start] != '{' && text[start] != '[')
    fail("an object or a list must stand at the top", std::string_view(text).substr(0, start));

  boost::json::parse_options options;
  options.max_depth = deepestNesting;
  boost::json::basic_parser<Writer> parser(options);
  error_code error;
  const std::size_t end = parser.write_some(false, text.data(), text.size(), error);
  const std::string_view read = std::string_view(text).substr(0, end);
  if (error)
    fail(reasonOf(error), read);
  if (end < text.size())
    fail("more behind its end", read);
  return std::move(parser.handler().output);
}

} // namespace tabwright::platform
