// A thin wrapper of libplist, whose nodes own their children. libplist reads and writes texts as they are, so
// characters that other readers of XML refuse are replaced before they get in.
#include "platform/linux/PropertyListDocument.h"

#include <unicode/unistr.h>

#include <cstdlib>
#include <map>
#include <new>
#include <plist/plist.h>
#include <stdexcept>
#include <utility>

namespace tabwright::platform {
namespace {

using Texts = std::map<std::string, std::string>;

constexpr std::size_t mostContainers = 1000;

std::size_t countOf(std::string_view part, std::string_view text) {
  std::size_t count = 0;
  for (std::size_t place = text.find(part); place != text.npos; place = text.find(part, place + part.size()))
    ++count;
  return count;
}

std::string textOf(plist_t node) {
  std::uint64_t length = 0;
  const char* characters = plist_get_string_ptr(node, &length);
  return characters ? std::string(characters, length) : std::string();
}

// The entries of a dictionary of texts; nothing for one that holds anything else.
std::optional<Texts> textsOf(plist_t node) {
  Texts texts;
  plist_dict_iter rawIterator = nullptr;
  plist_dict_new_iter(node, &rawIterator);
  const std::unique_ptr<void, void (*)(void*)> iterator(rawIterator, std::free);
  for (;;) {
    char* rawKey = nullptr;
    plist_t value = nullptr;
    // The library hands the key out as a copy, and the value as its own.
    plist_dict_next_item(node, iterator.get(), &rawKey, &value);
    const std::unique_ptr<char, void (*)(void*)> key(rawKey, std::free);
    if (!value)
      return texts;
    if (plist_get_node_type(value) != PLIST_STRING)
      return std::nullopt;
    texts.emplace(key.get(), textOf(value));
  }
}

struct NodeMaker {
  plist_t operator()(ForeignValue) const { throw std::invalid_argument("a foreign value can't be set"); }
  // libplist keeps whole numbers in 64 bits and writes them signed.
  plist_t operator()(std::int64_t number) const { return plist_new_uint(static_cast<std::uint64_t>(number)); }
  plist_t operator()(double number) const { return plist_new_real(number); }
  plist_t operator()(bool flag) const { return plist_new_bool(flag ? 1 : 0); }
  plist_t operator()(const std::string& text) const { return plist_new_string(text.c_str()); }
  plist_t operator()(const Texts& texts) const {
    plist_t node = plist_new_dict();
    for (const auto& [key, text] : texts)
      plist_dict_set_item(node, key.c_str(), plist_new_string(text.c_str()));
    return node;
  }
};

std::string storableText(const std::string& text) {
  constexpr char16_t replacement = 0xFFFD;
  // Invalid UTF-8 becomes U+FFFD on the way to ICU.
  icu::UnicodeString characters = icu::UnicodeString::fromUTF8(text);
  for (std::int32_t index = 0; index < characters.length(); ++index) {
    const char16_t unit = characters.charAt(index);
    const bool isControl = unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r';
    if (isControl || unit == 0xFFFE || unit == 0xFFFF)
      characters.setCharAt(index, replacement);
  }
  std::string cleaned;
  characters.toUTF8String(cleaned);
  return cleaned;
}

} // namespace

void PropertyListDocument::Release::operator()(void* node) const {
  plist_free(node);
}

PropertyListDocument::PropertyListDocument() : root_(plist_new_dict()) {}

PropertyListDocument::PropertyListDocument(const PropertyListDocument& other) : root_(plist_copy(other.root_.get())) {}

// By a copy that is moved in, so that a failure leaves this as it was.
PropertyListDocument& PropertyListDocument::operator=(const PropertyListDocument& other) {
  return *this = PropertyListDocument(other);
}

std::optional<PropertyListDocument> PropertyListDocument::parse(std::string_view data) {
  // Counted in the text, before the library's parser meets the nesting.
  if (countOf("<array", data) + countOf("<dict", data) > mostContainers)
    return std::nullopt;
  plist_t root = nullptr;
  // For a text that is none the library leaves the root null.
  plist_from_xml(data.data(), static_cast<std::uint32_t>(data.size()), &root);
  Node node(root);
  if (!node || plist_get_node_type(node.get()) != PLIST_DICT)
    return std::nullopt;
  return PropertyListDocument(std::move(node));
}

std::optional<DefaultsValue> PropertyListDocument::find(const std::string& name) const {
  const plist_t node = plist_dict_get_item(root_.get(), name.c_str());
  if (!node)
    return std::nullopt;
  switch (plist_get_node_type(node)) {
  case PLIST_BOOLEAN: {
    std::uint8_t flag = 0;
    plist_get_bool_val(node, &flag);
    return flag != 0;
  }
  case PLIST_UINT: {
    std::uint64_t number = 0;
    plist_get_uint_val(node, &number);
    return static_cast<std::int64_t>(number);
  }
  case PLIST_REAL: {
    double number = 0;
    plist_get_real_val(node, &number);
    return number;
  }
  case PLIST_STRING:
    return textOf(node);
  // A dictionary of anything but texts has no type here, and is left alone.
  case PLIST_DICT:
    if (auto texts = textsOf(node))
      return *std::move(texts);
    return ForeignValue{};
  default:
    return ForeignValue{};
  }
}

void PropertyListDocument::set(const std::string& name, const DefaultsValue& value) {
  plist_dict_set_item(root_.get(), name.c_str(), std::visit(NodeMaker{}, storable(value)));
}

DefaultsValue PropertyListDocument::storable(DefaultsValue value) {
  if (auto* text = std::get_if<std::string>(&value))
    return storableText(*text);
  if (auto* texts = std::get_if<Texts>(&value)) {
    Texts cleaned;
    for (const auto& [key, text] : *texts)
      cleaned.insert_or_assign(storableText(key), storableText(text));
    return cleaned;
  }
  return value;
}

std::string PropertyListDocument::xml() const {
  char* characters = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(root_.get(), &characters, &length);
  if (!characters)
    throw std::bad_alloc();
  // Freed by the library that has allocated it.
  const std::unique_ptr<char, void (*)(char*)> owned(characters, plist_to_xml_free);
  return std::string(characters, length);
}

} // namespace tabwright::platform
