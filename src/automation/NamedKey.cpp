// The table is walked for each question: it has some sixty rows.
#include "automation/NamedKey.h"

#include "platform/AsciiCase.h"
#include "platform/KeyCodes.h"

#include <fmt/core.h>

#include <algorithm>
#include <functional>

namespace tabwright::automation {

namespace {

NamedKey keyOf(const NamedKeyRow& row) {
  return {row.keycode, row.keycode, std::string(row.name)};
}

const NamedKeyRow* findRow(const std::function<bool(const NamedKeyRow&)>& isMeant) {
  for (const NamedKeySection& section : namedKeySections()) {
    const auto row = std::ranges::find_if(section.items, isMeant);
    if (row != section.items.end())
      return &*row;
  }
  return nullptr;
}

// Users write names of keys in many ways: "Page Up", "pageup", "PAGE UP".
std::string comparable(std::string_view name) {
  std::string text = platform::lowercased(name);
  std::erase(text, ' ');
  return text;
}

} // namespace

std::optional<NamedKey> NamedKey::find(std::string_view nameOrCode) {
  const std::string wanted = comparable(nameOrCode);
  const NamedKeyRow* row = findRow([&](const NamedKeyRow& each) {
    return wanted == comparable(each.name) || wanted == std::to_string(each.keycode) ||
           (!wanted.empty() && wanted == comparable(each.otherName));
  });
  return row ? std::optional(keyOf(*row)) : std::nullopt;
}

std::vector<NamedKey> NamedKey::entities(std::span<const std::int64_t> ids) {
  std::vector<NamedKey> keys;
  for (const NamedKeySection& section : namedKeySections()) {
    for (const NamedKeyRow& row : section.items) {
      if (std::ranges::find(ids, row.keycode) != ids.end())
        keys.push_back(keyOf(row));
    }
  }
  return keys;
}

platform::Key NamedKey::key() const {
  // The table names these two by each other's code. Users mean what the name says; scripts, which press keys by code,
  // mean the code.
  constexpr std::int64_t down = 125;
  constexpr std::int64_t up = 126;
  const std::int64_t code = keycode == down ? up : keycode == up ? down : keycode;
  return platform::keyOfCode(code).value();
}

const intents::EntityDefinition<NamedKey>& NamedKey::definition() {
  static const intents::EntityDefinition<NamedKey> definition(
      "NamedKey",
      {{"id", &NamedKey::id, intents::PropertyPresence::needed},
       {"keycode", &NamedKey::keycode},
       {"name", &NamedKey::name}},
      [](const NamedKey& key) { return key.name; }, intents::TextForm::names);
  return definition;
}

const NamedKeyProvider& namedKeyProvider() {
  static const NamedKeyProvider provider;
  return provider;
}

std::vector<intents::OptionSection> NamedKeyProvider::results() const {
  std::vector<intents::OptionSection> collection;
  for (const NamedKeySection& section : namedKeySections()) {
    intents::OptionSection& options = collection.emplace_back(std::string(section.label));
    for (const NamedKeyRow& row : section.items)
      options.options.push_back({.value = intents::ValueTraits<NamedKey>::toJson(keyOf(row)),
                                 .title = std::string(row.name),
                                 .text = std::string(row.otherName.empty() ? row.name : row.otherName)});
  }
  return collection;
}

} // namespace tabwright::automation

namespace tabwright::intents {

using automation::NamedKey;

namespace {

constexpr std::string_view expected = "the name of a key, such as Escape, Page Up or F5";

} // namespace

// By its name, by its code, or by an object of which only the id counts.
NamedKey ValueTraits<NamedKey>::fromJson(const boost::json::value& json) {
  std::optional<NamedKey> key;
  if (const boost::json::string* text = json.if_string())
    key = NamedKey::find(*text);
  else if (json.is_int64())
    key = NamedKey::find(std::to_string(json.get_int64()));
  else if (json.is_object())
    key = NamedKey::find(std::to_string(NamedKey::definition().fromJson(json).id));
  if (!key)
    throw ValueError::unsuitable(json, expected);
  return std::move(*key);
}

NamedKey ValueTraits<NamedKey>::fromText(std::string_view text) {
  if (auto key = NamedKey::find(text))
    return std::move(*key);
  if (!text.starts_with('{'))
    throw ValueError::unsuitable(text, expected);
  return fromJson(detail::parseValue(text, expected));
}

} // namespace tabwright::intents
