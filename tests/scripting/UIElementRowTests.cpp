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

/// Windows with what lists of files, settings and pages have.
class UIElementRows : public testing::Test, protected testsupport::ScriptBench {
protected:
  UIElementRows() {
    desktop->add(10, "Files", "org.files", {"Home"});
    desktop->elementsOfAll.all[10] = part(
        Role::application, "files",
        {part(Role::frame, "Home", {part(Role::scrollPane, "", {files(3)}), rowsOfAPage(), places(), tabs(), size()})});
  }

  static ModelElement part(Role role, std::string name, std::vector<ModelElement> children = {}) {
    return {.role = role,
            .name = std::move(name),
            .states = {State::visible, State::showing, State::enabled, State::sensitive},
            .children = std::move(children)};
  }

  /// As GTK and Qt show them: the heads of three columns, and the cells of all rows.
  static ModelElement files(std::size_t rows) {
    ModelElement table = part(Role::treeTable, "");
    table.columns = 3;
    table.isSelectable = true;
    for (const char* head : {"On", "Name", "Size"})
      table.children.push_back(part(Role::tableColumnHeader, head));
    for (std::size_t row = 1; row <= rows; ++row) {
      ModelElement tick = part(Role::tableCell, "");
      tick.actions = {"Toggle", "Activate"};
      if (row == 2)
        tick.states.push_back(State::checked);
      ModelElement picture = part(Role::tableCell, "");
      picture.isImage = true;
      ModelElement size = part(Role::tableCell, std::to_string(row * 100));
      size.actions = {"Edit"};
      size.extents = {50, static_cast<int>(row) * 20, 40, 20};
      ModelElement named = part(Role::tableCell, "", {picture, part(Role::tableCell, "File " + std::to_string(row))});
      named.children[0].extents = named.children[1].extents = tick.extents = {10, static_cast<int>(row) * 20, 40, 20};
      if (row == 3) // scrolled out of sight, as Qt tells it
        size.states = {State::enabled, State::sensitive};
      table.children.insert(table.children.end(), {tick, named, size});
    }
    return table;
  }

  /// As browsers show them.
  static ModelElement rowsOfAPage() {
    ModelElement table = part(
        Role::table, "Page", {part(Role::tableRow, "first", {part(Role::tableCell, "a"), part(Role::tableCell, "b")})});
    table.columns = 2;
    return table;
  }

  static ModelElement places() {
    ModelElement list = part(Role::listBox, "Places", {part(Role::listItem, "Desk"), part(Role::listItem, "Disk")});
    list.isSelectable = true;
    return list;
  }

  static ModelElement tabs() {
    return part(Role::pageTabList, "", {part(Role::pageTab, "One"), part(Role::pageTab, "Two")});
  }

  static ModelElement size() {
    ModelElement slider = part(Role::slider, "Zoom");
    slider.text = "3";
    slider.range = {0.0, 10.0};
    return slider;
  }

  std::string inFiles(const std::string& lines) {
    return systemEvents("tell process \"Files\"\n" + lines + "\nend tell");
  }
  std::string inTable(const std::string& lines) {
    return inFiles("tell outline 1 of scroll area 1 of window 1\n" + lines + "\nend tell");
  }
};

TEST_F(UIElementRows, StandInTablesThatShowCellsAlone) {
  EXPECT_EQ(inTable("{count rows, count columns, name of columns, name of buttons}"),
            R"({3, 3, {"On", "Name", "Size"}, {"On", "Name", "Size"}})");
  EXPECT_EQ(inTable("{name, role, subrole, class, enabled, value} of row 2"),
            R"({"File 2 200", "AXRow", "AXOutlineRow", row, true, missing value})");
  EXPECT_EQ(inTable("role of UI elements of row 1"), R"({"AXCheckBox", "AXImage", "AXTextField", "AXTextField"})");
  EXPECT_EQ(inTable("{value of text field 2, value of static text 1, value of checkbox 1} of row 2"),
            R"({"200", "File 2", 1})");
  EXPECT_EQ(inTable("value of text field 2 of rows"), R"({"100", "200", "300"})");
  EXPECT_EQ(inTable("{position, size} of row 2"), "{{10, 40}, {80, 20}}");
  EXPECT_EQ(inTable("get row 4"),
            "error -1728: System Events got an error: Can’t get row 4 of outline 1 of scroll area 1 of window 1 of "
            "process \"Files\".");
}

TEST_F(UIElementRows, AreFoundAgainByWhatAnswersThem) {
  const std::string place = " of outline 1 of scroll area 1 of window 1 of application process id 10";
  EXPECT_THAT(
      inTable("get {row after row 1, UI element 2, UI element 4, row \"file 3 300\"}"),
      testing::StartsWith("{row 2" + place + ", row 2" + place + ", column \"On\"" + place + ", row 3" + place));
  EXPECT_THAT(inTable("first row whose value of text field 1 is \"File 2\""), testing::StartsWith("row 2" + place));
  EXPECT_EQ(inFiles("set found to {}\nrepeat with e in (get entire contents of scroll area 1 of window 1)\n"
                    "set end of found to role of e\nend repeat\nreturn count of found"),
            std::to_string(1 + 3 + 3 * 4 + 3 + 3));
}

TEST_F(UIElementRows, OfLargeTablesCostWhatTheirCellsCost) {
  desktop->elementsOfAll.all[10].children[0].children[0].children[0] = files(5000);
  EXPECT_EQ(inTable("count rows"), "5000");
  EXPECT_LT(desktop->elementsOfAll.asked, 40u);
  desktop->elementsOfAll.asked = 0;
  EXPECT_EQ(inTable("value of text field 1 of row 4900"), R"("File 4900")");
  EXPECT_LT(desktop->elementsOfAll.asked, 60u);
  desktop->elementsOfAll.rounds = 0;
  EXPECT_EQ(inTable("count (name of rows)"), "5000");
  EXPECT_LT(desktop->elementsOfAll.rounds, 5000u / 10) << "many rows are read at once";
  desktop->elementsOfAll.all[10].children[0].children[0].children[0] = files(50'001);
  EXPECT_THAT(inTable("selected of rows"), HasSubstr("too many rows"));
  EXPECT_EQ(inTable("value of text field 2 of last row"), R"("5000100")");
}

TEST_F(UIElementRows, AreSelected) {
  EXPECT_EQ(inTable("select row 1\nselect row 2\nset selected of row 3 to true\nreturn selected of rows"),
            "{false, true, true}");
  EXPECT_EQ(
      inTable("set value of attribute \"AXSelected\" of row 2 to false\nreturn name of rows whose selected is true"),
      R"({"File 3 300"})");
  EXPECT_EQ(inTable("select rows 1 thru 2\nreturn selected of rows"), "{true, true, false}");
  EXPECT_EQ(inTable("click row 3\nreturn selected of rows"), "{false, false, true}");
  EXPECT_THAT(desktop->calls, ElementsAre()) << "a row may be out of sight";
  EXPECT_THAT(inTable("click text field 2 of row 3"), HasSubstr("it is scrolled out of sight"));
  EXPECT_EQ(inTable("click text field 2 of row 1\nset value of checkbox 1 of row 1 to true"), "true");
  EXPECT_THAT(desktop->calls, ElementsAre("click 70,30", "click 30,30"));
  EXPECT_THAT(desktop->elementsOfAll.pressed, ElementsAre());
}

TEST_F(UIElementRows, ThatAnApplicationShowsStayAsTheyAre) {
  EXPECT_EQ(inFiles("tell table 1 of window 1 to return {count rows, name of rows, name of UI elements of row 1, "
                    "role of UI element 1 of row 1, count columns}"),
            R"({1, {"first"}, {"a", "b"}, "AXCell", 0})");
  EXPECT_THAT(inFiles("select row 1 of table 1 of window 1"), HasSubstr("The element can’t do that"));
}

TEST_F(UIElementRows, OfListsAndTabsAreSelectedWhereTheyCanBe) {
  EXPECT_EQ(inFiles("tell list 1 of window 1\nselect row 1\nset selected of row 2 to true\nset a to selected of rows\n"
                    "set selected of row 1 to false\nreturn {a, selected of rows}\nend tell"),
            "{{true, true}, {false, true}}");
  EXPECT_EQ(inFiles("select slider 1 of window 1"),
            "error -10000: System Events got an error: The element can’t do that: nothing is selected here.");
  EXPECT_THAT(inFiles("select window 1"), HasSubstr("error -1708"));
  EXPECT_THAT(inFiles("set selected of window 1 to true"), HasSubstr("error -10006"));
  inFiles("select radio button \"Two\" of tab group 1 of window 1");
  EXPECT_THAT(desktop->elementsOfAll.pressed, ElementsAre("Two"));
  EXPECT_THAT(inFiles("set selected of radio button 1 of tab group 1 of window 1 to false"),
              HasSubstr("can’t do that"));
}

TEST_F(UIElementRows, SlidersTellTheEndsOfTheirValues) {
  EXPECT_EQ(inFiles("tell slider 1 of window 1\nset value to 5\n"
                    "return {minimum value, maximum value, value, value of attribute \"AXMaxValue\"}\nend tell"),
            "{0.0, 10.0, 5.0, 10.0}");
  EXPECT_EQ(inFiles("minimum value of list 1 of window 1"), "missing value");
}

} // namespace
