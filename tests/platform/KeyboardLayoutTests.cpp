#include "platform/linux/KeyboardLayout.h"
#include "support/FailureText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace tabwright::platform {

namespace {

constexpr std::uint8_t shift = 1 << 0, mod5 = 1 << 7;

KeyboardLayout layoutOf(const char* names, const char* variants = "") {
  const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                           &xkb_context_unref);
  const xkb_rule_names rules{"evdev", "pc105", names, variants, ""};
  const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
      xkb_keymap_new_from_names(context.get(), &rules, XKB_KEYMAP_COMPILE_NO_FLAGS), &xkb_keymap_unref);
  return KeyboardLayout(keymap.get());
}

/// Keycode, group ("-" where it doesn't matter) and modifiers.
std::string told(const std::optional<KeyPlace>& place) {
  if (!place)
    return "none";
  const std::string locks = place->numLock == KeyPlace::NumLock::on    ? " numlock"
                            : place->numLock == KeyPlace::NumLock::off ? " no numlock"
                                                                       : "";
  return std::to_string(place->keycode) + (place->group ? " in " + std::to_string(*place->group) : " anywhere") +
         (place->modifiers == shift  ? " shift"
          : place->modifiers == mod5 ? " level3"
                                     : "") +
         locks;
}

TEST(KeyboardLayout, FindsTheKeyInTheGroupInEffect) {
  const KeyboardLayout layout = layoutOf("us,de");
  EXPECT_EQ(told(layout.findCharacter('z', 0)), "52 in 0");
  EXPECT_EQ(told(layout.findCharacter('z', 1)), "29 in 1");
  EXPECT_EQ(told(layout.findCharacter('@', 0)), "11 in 0 shift");
  EXPECT_EQ(told(layout.findCharacter('@', 1)), "24 in 1 level3");
  EXPECT_EQ(told(layout.findCharacter(U'ß', 0)), "20 in 1") << "the other group has it";
  EXPECT_EQ(told(layout.findCharacter('\n', 1)), "36 anywhere");
  EXPECT_EQ(told(layout.findCharacter(U'世', 0)), "none");
}

TEST(KeyboardLayout, FindsCharactersWithSymbolsOfTheirOwn) {
  const KeyboardLayout layout = layoutOf("us,ru,gr");
  EXPECT_EQ(told(layout.findCharacter(U'Ж', 0)), "47 in 1 shift");
  EXPECT_EQ(told(layout.findCharacter(U'λ', 0)), "46 in 2");
  EXPECT_EQ(told(layout.findCharacter('a', 1)), "38 in 0");
}

TEST(KeyboardLayout, TurnsNumLockForTheKeypadAndTypesDigitsElsewhere) {
  const KeyboardLayout layout = layoutOf("us");
  EXPECT_EQ(told(layout.findSymbol(XKB_KEY_KP_0, 0)), "90 anywhere numlock");
  EXPECT_EQ(told(layout.findSymbol(XKB_KEY_KP_Insert, 0)), "90 anywhere no numlock");
  EXPECT_EQ(told(layout.findCharacter('0', 0)), "19 anywhere");
  EXPECT_EQ(told(layout.findSymbol(XKB_KEY_F13, 0)), "none");
}

TEST(KeyboardLayout, KnowsModifierKeysAndSpareOnes) {
  const KeyboardLayout layout = layoutOf("us");
  EXPECT_EQ(layout.modifierKey(shift), 50);
  EXPECT_EQ(layout.modifiersOf(62), shift) << "the right one";
  EXPECT_EQ(layout.modifiersOf(66), 0) << "CapsLock locks";
  EXPECT_EQ(layout.modifierKey(mod5), 92);
  EXPECT_GE(layout.spareKeys().size(), 16u);
  EXPECT_GT(layout.spareKeys().front(), layout.spareKeys().back());
  EXPECT_FALSE(layout.hasKey(7));
}

TEST(TypableCharacters, AreAllButControlCharactersAndWhatIsNoCharacter) {
  EXPECT_EQ(typableCharacters("aß世\U0001F600\n\t"), U"aß世\U0001F600\n\t");
  const auto refusal = [](std::string_view text) {
    return testsupport::failureText([&] { return typableCharacters(text); });
  };
  EXPECT_EQ(refusal("a\x07"), "No key can stand for the character U+0007. Nothing was typed.");
  EXPECT_EQ(refusal("a\xC2\x85"), "No key can stand for the character U+0085. Nothing was typed.");
  EXPECT_THAT(refusal("a\xFF"), testing::HasSubstr("byte 2"));
  EXPECT_THAT(refusal("\xEF\xBF\xBF"), testing::HasSubstr("U+FFFF"));
}

} // namespace

} // namespace tabwright::platform
