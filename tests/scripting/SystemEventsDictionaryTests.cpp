#include "support/ScriptBench.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace tabwright;
using testing::ElementsAre;
using testing::HasSubstr;

class SystemEventsDictionary : public testing::Test, protected testsupport::ScriptBench {
protected:
  SystemEventsDictionary() {
    desktop->add(10, "Editor", "org.editor");
    desktop->add(20, "Chromium", "org.chromium.chromium", {"One", "Two"});
    desktop->add(30, "Safari", "com.apple.safari");
    desktop->menus = {
        {{}, {{"Safari", true, true}, {"Ablage", true, true}}},
        {{1}, {{"Neu", true, false}, {"", true, false}, {"Zuletzt", true, true}}},
        {{1, 2}, {{"Seite", false, false}}},
    };
  }
};

TEST_F(SystemEventsDictionary, FindsProcesses) {
  EXPECT_EQ(systemEvents("name of first application process whose frontmost is true"), R"("Editor")");
  EXPECT_EQ(systemEvents("bundle identifier of process \"chromium\""), R"("org.chromium.chromium")");
  EXPECT_EQ(systemEvents("name of process \"org.chromium.chromium\""), R"("Chromium")");
  EXPECT_EQ(systemEvents("count (every process whose bundle identifier is \"com.apple.safari\")"), "1");
  EXPECT_EQ(systemEvents("name of processes whose visible is true"), R"({"Editor", "Chromium", "Safari"})");
  EXPECT_EQ(systemEvents("tell process \"Chromium\"\nset n to (name of windows) as list\nend tell\nreturn n"),
            R"({"One", "Two"})");
  EXPECT_EQ(systemEvents("exists process \"Nothing\""), "false");
  EXPECT_EQ(systemEvents("get process \"Nothing\""),
            "error -1728: System Events got an error: Can’t get process \"Nothing\".");
}

TEST_F(SystemEventsDictionary, HidesShowsAndActivates) {
  EXPECT_EQ(systemEvents("set p to first application process whose frontmost is true\nset visible of p to false\n"
                         "set q to first application process whose frontmost is true\nset n to name of q\n"
                         "set visible of p to true\nactivate p\nreturn n"),
            R"("Chromium")");
  systemEvents("tell process \"Safari\" to set frontmost to true");
  EXPECT_THAT(desktop->calls, ElementsAre("hide 10", "show 10", "activate 10", "activate 30"));
}

TEST_F(SystemEventsDictionary, WalksMenus) {
  const auto inSafari = [&](const std::string& lines) {
    return systemEvents("tell process \"Safari\"\n" + lines + "\nend tell");
  };
  EXPECT_EQ(inSafari("name of menu bar items of menu bar 1"), R"({"Safari", "Ablage"})");
  EXPECT_EQ(
      inSafari("set m to \"ablage\"\ntell menu bar 1\nset f to first menu of (first menu bar item whose name is m)\n"
               "end tell\nreturn name of menu items of f"),
      R"({"Neu", "", "Zuletzt"})");
  EXPECT_EQ(inSafari("enabled of menu item 1 of menu 1 of menu item 3 of menu 1 of menu bar item 2 of menu bar 1"),
            "false");
  EXPECT_EQ(inSafari("name of menu item 1 of menu 2 of menu bar 1"), R"("Neu")");
  EXPECT_EQ(inSafari("count menus of menu item 1 of menu 2 of menu bar 1"), "0");
  inSafari("click menu item \"Seite\" of menu 1 of menu item \"Zuletzt\" of menu 1 of menu bar item \"Ablage\" of menu "
           "bar 1");
  EXPECT_THAT(desktop->calls, ElementsAre("choose 30 1/2/0"));
  EXPECT_THAT(inSafari("click menu item 9 of menu 2 of menu bar 1"), HasSubstr("error -1728"));
}

TEST_F(SystemEventsDictionary, PressesKeys) {
  systemEvents("tell process \"Chromium\"\nkeystroke \"x\" using {command down, shift down}\nkey up {command, shift}\n"
               "keystroke \"y\" using {}\nkey up {}\nkey code 36 using option down\nkey down control\nend tell");
  EXPECT_THAT(desktop->calls,
              ElementsAre("type x command shift", "up command shift", "type y", "key 36 option", "down control"));
}

} // namespace
