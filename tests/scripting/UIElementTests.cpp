#include "support/ScriptBench.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace tabwright;
using testing::ElementsAre;
using testing::HasSubstr;
using testsupport::ModelElement;
using Role = platform::AccessibleRole;
using State = platform::AccessibleState;

const std::vector<State> shown{State::visible, State::enabled, State::sensitive};

ModelElement element(Role role, std::string name, std::vector<ModelElement> children = {}) {
  return {.role = role, .name = std::move(name), .states = shown, .children = std::move(children)};
}

ModelElement with(ModelElement element, State state) {
  element.states.push_back(state);
  return element;
}

ModelElement holding(ModelElement element, std::string text) {
  element.text = std::move(text);
  return element;
}

/// An editor with a window of each kind of control, and a dialog that this window waits for.
class UIElements : public testing::Test, protected testsupport::ScriptBench {
protected:
  UIElements() {
    desktop->add(10, "Editor", "org.editor", {"Notes", "Save", "Other"});
    desktop->all.front().windows[1].dialogOf = desktop->all.front().windows[0].id;
    desktop->all.front().windows[0].place = {10, 20, 300, 200};
    desktop->all.front().windows[0].isActive = true;
    desktop->elementsOfAll.all[10] = element(
        Role::application, "editor",
        {element(Role::frame, "Other", {element(Role::pushButton, "Elsewhere")}),
         element(
             Role::dialog, "Save ",
             {element(Role::panel, "", {element(Role::fileChooser, "Files", {holding(element(Role::entry, ""), "a")})}),
              element(Role::pushButton, "OK"), element(Role::pushButton, "Cancel")}),
         element(Role::frame, "Notes",
                 {element(Role::menuBar, ""),
                  element(Role::filler, "",
                          {element(Role::toolBar, "", {element(Role::pushButton, "Back"), picture()}),
                           element(Role::panel, "Options",
                                   {with(element(Role::checkBox, "Wrap"), State::checked),
                                    element(Role::radioButton, "Left"), holding(element(Role::slider, ""), "0.5")})}),
                  with(holding(element(Role::text, ""), "two\nlines"), State::multiLine), hidden(),
                  element(Role::label, "Ready")})});
  }

  static ModelElement picture() {
    ModelElement picture = element(Role::image, "Logo");
    picture.actions = {};
    picture.extents = {100, 50, 20, 10};
    return picture;
  }

  static ModelElement hidden() {
    ModelElement hidden = element(Role::pushButton, "Hidden");
    hidden.states = {};
    return hidden;
  }

  std::string inEditor(const std::string& lines) {
    return systemEvents("tell process \"Editor\"\n" + lines + "\nend tell");
  }
};

TEST_F(UIElements, StandWithoutTheContainersThatOnlyLayThemOut) {
  EXPECT_EQ(inEditor("set found to {}\nrepeat with e in UI elements of window 1\nset end of found to class of e\n"
                     "end repeat\nreturn found"),
            "{sheet, toolbar, group, text area, static text}");
  EXPECT_EQ(inEditor("name of every button of toolbar 1 of window 1"), R"({"Back"})");
  EXPECT_EQ(inEditor("{name, role, value, enabled} of checkbox 1 of group \"options\" of window 1"),
            R"({"Wrap", "AXCheckBox", 1, true})");
  EXPECT_EQ(inEditor("role of UI elements of group 1 of window 1"), R"({"AXCheckBox", "AXRadioButton", "AXSlider"})");
  EXPECT_EQ(inEditor("get {value of text area 1, value of static text 1, value of slider 1 of group 1} of window 1"),
            R"({"two
lines", "Ready", 0.5})");
  EXPECT_EQ(inEditor("name of first UI element of window 1 whose role is \"AXStaticText\""), R"("Ready")");
  EXPECT_EQ(inEditor("exists button \"Hidden\" of window 1"), "false");
  EXPECT_EQ(inEditor("get button \"Nowhere\" of window 1"),
            "error -1728: System Events got an error: Can’t get button \"Nowhere\" of window 1 of process \"Editor\".");
}

TEST_F(UIElements, AreNamedSoThatAScriptFindsThemAgain) {
  const std::string all = inEditor("entire contents of window 1");
  EXPECT_THAT(all, testing::StartsWith("{sheet 1 of window 1 of application process id 10, "
                                       "text field 1 of sheet 1 of window 1 of application process id 10, "
                                       "button \"OK\" of sheet 1 of window 1"));
  EXPECT_THAT(all, HasSubstr("slider 1 of group \"Options\" of window 1"));
  EXPECT_EQ(inEditor("set found to {}\nrepeat with e in (get entire contents of window 1)\n"
                     "if class of e is button then set end of found to name of e\nend repeat\nreturn found"),
            R"({"OK", "Cancel", "Back"})");
}

TEST_F(UIElements, ArePressedAndFilled) {
  inEditor(
      "click button \"cancel\" of sheet 1 of window 1\nperform action \"AXPress\" of button 1 of sheet 1 of window 1");
  inEditor(
      "set value of checkbox \"Wrap\" of group 1 of window 1 to 1\n"
      "set value of checkbox \"Wrap\" of group 1 of window 1 to false\nclick radio button 1 of group 1 of window 1");
  EXPECT_THAT(desktop->elementsOfAll.pressed, ElementsAre("Cancel", "OK", "Wrap", "Left"));
  inEditor("click image 1 of toolbar 1 of window 1\nclick at {7, 8}");
  EXPECT_THAT(desktop->calls, ElementsAre("click 110,55", "click 7,8"));
  EXPECT_EQ(inEditor("tell text field 1 of sheet 1 of window 1\nset value to \"b\"\nset focused to true\n"
                     "return {value, focused}\nend tell"),
            R"({"b", true})");
  EXPECT_THAT(inEditor("set value of button 1 of sheet 1 of window 1 to 1"), HasSubstr("error -10006"));
  EXPECT_THAT(inEditor("increment button 1 of sheet 1 of window 1"), HasSubstr("error -1708"));
  EXPECT_EQ(inEditor("name of actions of button 1 of sheet 1 of window 1"), R"({"AXPress"})");
}

TEST_F(UIElements, OfADialogAreItsProgramsAndNeverAnotherWindows) {
  scripting::DesktopWindow& dialog = desktop->all.front().windows[1];
  dialog.shownBy = 11;
  desktop->elementsOfAll.all[11] =
      element(Role::application, "portal", {element(Role::dialog, "Save", {element(Role::pushButton, "Choose")})});
  EXPECT_EQ(inEditor("name of buttons of sheet 1 of window 1"), R"({"Choose"})");
  dialog.shownBy = 0;
  std::vector<ModelElement>& windows = desktop->elementsOfAll.all[10].children;
  windows.erase(windows.begin() + 1);
  EXPECT_THAT(inEditor("click button 1 of sheet 1 of window 1"), HasSubstr("“Save” isn’t shown"));
}

TEST_F(UIElements, TellOfAnApplicationThatShowsNone) {
  desktop->elementsOfAll.all.clear();
  EXPECT_THAT(inEditor("click button 1 of window 1"), HasSubstr("error -10000: System Events got an error: Editor "
                                                                "isn’t shown on the accessibility bus."));
  EXPECT_EQ(inEditor("name of windows"), R"({"Notes", "Other"})") << "which the window system knows";
  EXPECT_EQ(systemEvents("UI elements enabled"), "true");
  desktop->elementsOfAll.onCall = [] { throw platform::failure(platform::DesktopFault::noAccessibilityBus, "gone"); };
  EXPECT_EQ(systemEvents("UI elements enabled"), "false");
}

TEST_F(UIElements, WindowsHavePlacesAndAttributes) {
  EXPECT_EQ(inEditor("{count windows, name of window 2, name of window \"save\", name of sheets of window 1}"),
            R"({2, "Other", "Save", {"Save"}})");
  EXPECT_EQ(inEditor("set position of window 1 to {1, 2}\nset {size, position} of window 1 to {{400, 300}, {3, 4}}\n"
                     "return {position, size} of window 1"),
            "{{3, 4}, {400, 300}}");
  EXPECT_EQ(inEditor("value of attribute \"AXMain\" of windows"), "{true, false}");
  inEditor("set value of attribute \"AXMinimized\" of window 1 to true\nperform action \"AXRaise\" of window 2\n"
           "tell attribute \"AXFullScreen\" of window 2 to set value to true\nclose window 2");
  EXPECT_THAT(desktop->calls, ElementsAre("place 1000 1,2 300x200", "place 1000 1,2 400x300", "place 1000 3,4 400x300",
                                          "hide window 1000", "raise 1002", "full screen 1002 true", "close 1002"));
  EXPECT_THAT(inEditor("set value of attribute \"AXRole\" of window 1 to \"x\""), HasSubstr("error -10006"));
  EXPECT_THAT(inEditor("set position of window 1 to {1}"), HasSubstr("error -1700"));
  EXPECT_EQ(inEditor("value of attribute \"AXMinimized\" of button 1 of sheet 1 of window 1"),
            "error -1728: System Events got an error: Can’t get attribute \"AXMinimized\" of button 1 of sheet 1 of "
            "window 1 of process \"Editor\".");
  EXPECT_EQ(inEditor("{value of attribute \"AXTitle\", name of value of attribute \"AXFocusedWindow\"}"),
            R"({"Editor", "Notes"})");
}

TEST_F(UIElements, TheDesktopIsDarkOnRequest) {
  EXPECT_EQ(systemEvents("tell appearance preferences to set dark mode to not dark mode\n"
                         "return dark mode of appearance preferences"),
            "true");
}

} // namespace
