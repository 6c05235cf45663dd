// Results hold files as JSON objects whose data is in base 64 (RFC 4648, with padding), since a file may hold any
// bytes.
#include "intents/IntentFile.h"

#include "intents/ValueTraits.h"

#include <boost/json/serialize.hpp>

#include <cstdint>
#include <optional>

namespace tabwright::intents {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string encoded(std::string_view data) {
  std::string text;
  for (std::size_t start = 0; start < data.size(); start += 3) {
    const std::string_view group = data.substr(start, 3);
    std::uint32_t bits = 0;
    for (std::size_t index = 0; index < 3; ++index)
      bits = bits << 8 | (index < group.size() ? static_cast<unsigned char>(group[index]) : 0U);
    for (std::size_t index = 0; index < 4; ++index)
      // A group of n bytes has n + 1 digits; the rest is padding.
      text += index <= group.size() ? alphabet[bits >> (18 - 6 * index) & 63U] : '=';
  }
  return text;
}

std::optional<std::string> decoded(std::string_view text) {
  // Padding is part of the form, though no digit needs it to be read.
  if (text.size() % 4 != 0)
    return std::nullopt;
  while (!text.empty() && text.back() == '=')
    text.remove_suffix(1);
  std::string data;
  std::uint32_t bits = 0;
  unsigned pending = 0;
  for (const char character : text) {
    const std::size_t digit = alphabet.find(character);
    if (digit == std::string_view::npos)
      return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(digit);
    pending += 6;
    if (pending >= 8) {
      pending -= 8;
      data += static_cast<char>(bits >> pending & 0xFFU);
    }
  }
  return data;
}

const boost::json::string* textField(const boost::json::object& object, std::string_view key) {
  const boost::json::value* field = object.if_contains(key);
  return field ? field->if_string() : nullptr;
}

} // namespace

boost::json::value ValueTraits<IntentFile>::toJson(const IntentFile& value) {
  return {{"filename", value.filename}, {"type", value.type}, {"data", encoded(value.data)}};
}

IntentFile ValueTraits<IntentFile>::fromJson(const boost::json::value& json) {
  if (const boost::json::string* text = json.if_string())
    return fromText(*text);
  // The document itself, written out again.
  if (json.is_object() || json.is_array())
    return fromText(boost::json::serialize(json));
  throw ValueError::unsuitable(json, "a JSON object, a list, or a text");
}

template <>
std::optional<IntentFile> propertyFromJson(const boost::json::value& json) {
  if (const boost::json::object* object = json.if_object(); object && object->size() == 3) {
    const boost::json::string* filename = textField(*object, "filename");
    const boost::json::string* type = textField(*object, "type");
    const boost::json::string* data = textField(*object, "data");
    auto bytes = data ? decoded(*data) : std::nullopt;
    // A result whose files were saved has their paths instead of their data (`app::withFilesIn`), and may still be
    // given on.
    if (filename && type && (bytes || textField(*object, "path")))
      return IntentFile{
          .data = std::move(bytes).value_or(""), .filename = std::string(*filename), .type = std::string(*type)};
  }
  throw ValueError::unsuitable(json, "a file as an action gave it: an object of filename, type and data or path");
}

IntentFile ValueTraits<IntentFile>::fromText(std::string_view text) {
  return {.data = std::string(text), .filename = "input.json", .type = "application/json"};
}

} // namespace tabwright::intents
