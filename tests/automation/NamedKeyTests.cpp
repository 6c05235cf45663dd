#include "automation/KeyboardModifiers.h"
#include "automation/NamedKey.h"
#include "support/FailureText.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace tabwright::automation {
namespace {

using intents::ValueTraits;

TEST(NamedKey, IsFoundByNameAndCode) {
  const NamedKey left{123, 123, "Cursor ←"};
  for (const char* text : {"Cursor ←", "cursor left", "CursorLeft", "123", R"({"id": 123})"})
    EXPECT_EQ(ValueTraits<NamedKey>::fromText(text), left) << text;
  for (const char* json : {R"("Cursor ←")", "123", R"({"id": 123, "keycode": 5, "name": "x"})"})
    EXPECT_EQ(ValueTraits<NamedKey>::fromJson(boost::json::parse(json)), left) << json;
  for (const char* text : {"", "Escape key", "-1", "5", R"({"name": "Escape"})", R"({"id": 5})"})
    EXPECT_EQ(testsupport::failureName([&] { return ValueTraits<NamedKey>::fromText(text); }), "ValueError.unsuitable")
        << text;
}

TEST(NamedKey, IsHintedAtByAWordOfIts) {
  const auto complaint = [](const char* text) {
    return testsupport::failureText([&] { return ValueTraits<NamedKey>::fromText(text); });
  };
  EXPECT_THAT(complaint("Down Arrow"), testing::EndsWith("such as Page Down or Cursor Down."));
  EXPECT_THAT(complaint("escape key"), testing::EndsWith("such as Escape."));
  EXPECT_THAT(complaint("Nonsense"), testing::EndsWith("such as Escape, Page Up or F5."));
}

TEST(NamedKey, IsListedInTheOrderOfTheTable) {
  const std::array<std::int64_t, 4> ids{53, 1000, 115, 51};
  std::vector<std::string> names;
  for (const NamedKey& key : NamedKey::entities(ids))
    names.push_back(key.name);
  EXPECT_EQ(names, (std::vector<std::string>{"Backspace", "Escape", "Home"}));

  std::vector<std::string> sections;
  for (const intents::OptionSection& section : NamedKeyProvider().results())
    sections.push_back(section.label + " " + std::to_string(section.options.size()));
  EXPECT_EQ(sections, (std::vector<std::string>{"Miscellaneous 9", "Navigation 4", "Cursor 4", "Function keys 20",
                                                "Numeric Keypad 18", "JIS 4"}));
}

TEST(NamedKey, OfferedTextsAreReadAsTheirKeys) {
  for (const intents::OptionSection& section : NamedKeyProvider().results()) {
    for (const intents::Option& option : section.options)
      EXPECT_EQ(ValueTraits<NamedKey>::toJson(ValueTraits<NamedKey>::fromText(option.text)), option.value);
  }
}

TEST(KeyboardModifiers, AreThoseOfThisKeyboard) {
  EXPECT_EQ((KeyboardModifiers{.command = true, .function = true}.flags()), 0x900000u);
  EXPECT_EQ((KeyboardModifiers{.control = true, .option = true, .shift = true}.flags()), 0xE0000u);
  EXPECT_EQ(pressedModifiers(0x900000), (platform::KeyModifiers{.control = true}));
  EXPECT_EQ(pressedModifiers(0xE0000), (platform::KeyModifiers{.shift = true, .control = true, .alt = true}));
}

} // namespace
} // namespace tabwright::automation
