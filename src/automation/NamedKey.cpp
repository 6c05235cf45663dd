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

/// The words of a text, in small letters.
std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words{""};
  for (const char character : platform::lowercased(text)) {
    if (character == ' ')
      words.emplace_back();
    else
      words.back() += character;
  }
  std::erase(words, "");
  return words;
}

/// A noun phrase that names the keys that share a word with what came, such as “Cursor Down” for “Down Arrow”; a few
/// others where there are none.
std::string expectedInsteadOf(std::string_view came) {
  constexpr std::size_t mostNamed = 3;
  const std::vector<std::string> wanted = wordsOf(came);
  std::vector<std::string_view> near;
  for (const automation::NamedKeySection& section : automation::namedKeySections()) {
    for (const automation::NamedKeyRow& row : section.items) {
      const std::string_view name = row.otherName.empty() ? row.name : row.otherName;
      const auto isWanted = [&](const std::string& word) { return std::ranges::find(wanted, word) != wanted.end(); };
      if (near.size() < mostNamed && std::ranges::any_of(wordsOf(name), isWanted))
        near.push_back(name);
    }
  }
  if (near.empty())
    near = {"Escape", "Page Up", "F5"};
  std::string names(near.front());
  for (std::size_t index = 1; index < near.size(); ++index)
    names += fmt::format("{}{}", index + 1 == near.size() ? " or " : ", ", near[index]);
  return "the name of a key, such as " + names;
}

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
    throw ValueError::unsuitable(json, expectedInsteadOf(json.is_string() ? std::string_view(json.get_string()) : ""));
  return std::move(*key);
}

NamedKey ValueTraits<NamedKey>::fromText(std::string_view text) {
  if (auto key = NamedKey::find(text))
    return std::move(*key);
  if (!text.starts_with('{'))
    throw ValueError::unsuitable(text, expectedInsteadOf(text));
  return fromJson(detail::parseValue(text, expectedInsteadOf("")));
}

} // namespace tabwright::intents
