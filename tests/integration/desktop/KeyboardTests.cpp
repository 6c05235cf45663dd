#include "integration/desktop/DesktopFixture.h"
#include "platform/linux/KeyboardDisplay.h"
#include "platform/linux/X11Keyboard.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace tabwright::platform {

namespace {

class TypedText : public DesktopTest {
protected:
  void SetUp() override {
    const ClientWindow window = windowOf(windows, editor);
    windows.activate(window.id);
    area = findRole(applicationOf(editor), AccessibleRole::text);
    ASSERT_FALSE(area.path.empty());
    eventually([&] { return factsOf(area, {.states = true}).states->has(AccessibleState::focused); });
  }
  void TearDown() override { std::system("setxkbmap us"); }

  std::string text() { return factsOf(area, {.text = true}).text.value_or(""); }
  void clear() { accessibility.setText(area, "", {}); }
  void expectTyped(const std::string& expected) {
    eventually([&] { return text() == expected; });
    EXPECT_EQ(text(), expected);
  }

  Program editor{{"mousepad", "--disable-server"}};
  AccessibleElement area;
  X11Keyboard keyboard;
};

TEST_F(TypedText, ArrivesWhole) {
  std::string long2000;
  for (int line = 0; line < 25; ++line)
    long2000 += "The quick brown fox jumps over 13 lazy dogs; \"why?\" {Nobody} ~knows~ @ $5 & %7.\n";
  keyboard.type(long2000, {}, {});
  expectTyped(long2000);

  clear();
  const std::string foreign = "Grüße, Ærø! Привет, мир; γειά — 世界こんにちは, 안녕 😀👍🏽 ½ €";
  keyboard.type(foreign, {}, {});
  expectTyped(foreign);
}

TEST_F(TypedText, ArrivesOneCharacterAtATimeToo) {
  const std::vector<std::string> characters{"Д", "о", "б", "р", "о", " ", "世", "😀", "!"};
  std::string all;
  for (const std::string& each : characters) {
    keyboard.type(each, {}, {});
    all += each;
  }
  expectTyped(all);
}

TEST_F(TypedText, FollowsTheLayoutsGroup) {
  ASSERT_EQ(std::system("setxkbmap us,ru,de"), 0);
  KeyboardDisplay display;
  std::string all;
  for (const std::uint8_t group : {1, 2, 0}) {
    display.lockGroup(group);
    display.send();
    keyboard.type("Yes @ да ß z;", {}, {});
    all += "Yes @ да ß z;";
    EXPECT_EQ(display.state().group, group);
  }
  expectTyped(all);
}

TEST_F(TypedText, IsNotChangedByKeysOfTheUsers) {
  KeyboardDisplay display;
  display.strike(50, KeyboardDisplay::Stroke::down); // the left Shift
  display.lockModifiers(2, 2);                       // CapsLock
  display.send();
  keyboard.type("abC", {}, {});
  expectTyped("abC");
  EXPECT_EQ(display.state().lockedModifiers & 2, 2);
  EXPECT_TRUE(display.state().pressed.empty());
  display.lockModifiers(2, 0);
  display.send();
}

TEST_F(TypedText, GoesWithModifiersAndKeys) {
  keyboard.type("one two", {}, {});
  keyboard.press({.symbol = XKB_KEY_Left}, {.shift = true, .control = true}, {});
  keyboard.press({.symbol = XKB_KEY_KP_4}, {}, {});
  keyboard.type("a", {.control = true}, {});
  keyboard.press({.symbol = XKB_KEY_Right}, {}, {});
  keyboard.press({.symbol = XKB_KEY_Return}, {}, {});
  keyboard.type("x", {.shift = true}, {});
  expectTyped("one 4\nX");
}

TEST_F(TypedText, HeldModifiersCountUntilTheyAreReleased) {
  keyboard.hold({.shift = true});
  keyboard.type("a", {}, {});
  keyboard.release({.shift = true});
  keyboard.type("b", {}, {});
  expectTyped("Ab");
  {
    X11Keyboard other;
    other.hold({.control = true, .alt = true});
    EXPECT_EQ(KeyboardDisplay().state().pressed.size(), 2u);
  }
  EXPECT_TRUE(KeyboardDisplay().state().pressed.empty()) << "they go with the object";
}

TEST_F(TypedText, IsRefusedWholeOrStopped) {
  EXPECT_EQ(faultOf([&] { keyboard.type("ab\x01", {}, {}); }), DesktopFault::untypable);
  EXPECT_EQ(faultOf([&] { keyboard.press({.symbol = XKB_KEY_Thai_kokai}, {}, {}); }), DesktopFault::noSuchKey);
  std::stop_source source;
  source.request_stop();
  CallLimits limits;
  limits.stop = source.get_token();
  EXPECT_EQ(faultOf([&] { keyboard.type("世", {}, limits); }), DesktopFault::stopped);
  EXPECT_EQ(text(), "");
}

TEST_F(TypedText, SpareKeysAreGivenBack) {
  const auto spare = [] { return KeyboardDisplay().layout().spareKeys().size(); };
  const std::size_t before = spare();
  keyboard.type("世界", {}, {});
  EXPECT_EQ(spare(), before - 2);
  eventually([&] { return spare() == before; });
}

TEST(Keyboard, TellsThatThereIsNoWindowSystem) {
  X11Keyboard keyboard(":9999");
  EXPECT_EQ(faultOf([&] { keyboard.type("a", {}, {}); }), DesktopFault::noWindowSystem);
}

} // namespace

} // namespace tabwright::platform
