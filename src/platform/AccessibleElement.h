#pragma once

#include "platform/Rectangle.h"

#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace tabwright::platform {

/// Reference to one element of a running application: a window, a menu item, a button, the application itself. A value
/// that costs nothing to keep; it may outlive the element. Names on a bus are never given to another application, so
/// such a reference leads to nothing rather than to a stranger.
struct AccessibleElement {
  std::string application; ///< the application's name on the accessibility bus, such as ":1.7"
  std::string path;        ///< the element's within it

  friend bool operator==(const AccessibleElement&, const AccessibleElement&) = default;
};

/// The part that an element plays, by its number in AT-SPI 2 (`AtspiRole`). Elements may have roles that have no name
/// here. Toolkits choose among them with some freedom.
enum class AccessibleRole : std::uint32_t {
  /// Tells the user something, often as a window of its own.
  alert = 2,
  checkBox = 7,
  checkMenuItem = 8,
  colorChooser = 9,
  columnHeader = 10,
  comboBox = 11,
  dialog = 16,
  drawingArea = 18,
  fileChooser = 19,
  /// A container that lays out what is in it and shows nothing itself.
  filler = 20,
  /// A top-level window with a title; `window` is one without.
  frame = 23,
  /// Lies above the `layeredPane` beside it in a `rootPane`.
  glassPane = 24,
  icon = 26,
  image = 27,
  label = 29,
  layeredPane = 30,
  list = 31,
  listItem = 32,
  menu = 33,
  menuBar = 34,
  menuItem = 35,
  optionPane = 36,
  pageTab = 37,
  pageTabList = 38,
  panel = 39,
  passwordText = 40,
  /// A menu that stands in no bar, such as that of the second mouse button.
  popupMenu = 41,
  progressBar = 42,
  pushButton = 43,
  radioButton = 44,
  radioMenuItem = 45,
  rootPane = 46,
  scrollBar = 48,
  scrollPane = 49,
  separator = 50,
  slider = 51,
  spinButton = 52,
  splitPane = 53,
  statusBar = 54,
  table = 55,
  tableCell = 56,
  tableColumnHeader = 57,
  /// Parts its menu from where it opens, so that it stays open.
  tearoffMenuItem = 59,
  terminal = 60,
  text = 61,
  toggleButton = 62,
  toolBar = 63,
  tree = 65,
  /// A tree whose rows have several columns.
  treeTable = 66,
  viewport = 68,
  window = 69,
  paragraph = 73,
  /// The root of an application's elements; its windows are the children.
  application = 75,
  entry = 79,
  /// A document of whatever kind; `documentText` and `documentWeb` say which.
  documentFrame = 82,
  heading = 83,
  /// A block of a document, such as HTML's `div`.
  section = 85,
  form = 87,
  link = 88,
  tableRow = 90,
  treeItem = 91,
  documentText = 94,
  /// A page.
  documentWeb = 95,
  listBox = 98,
  /// Controls that belong together.
  grouping = 99,
  notification = 101,
  /// A bar with a message within a window.
  infoBar = 102,
  /// Shows a level, such as that of a battery.
  levelBar = 103,
  staticText = 116,
};

/// A state that an element is in or not, by its number in AT-SPI 2 (`AtspiStateType`).
enum class AccessibleState : unsigned {
  active = 1, ///< the window has the keyboard
  /// Of check boxes, radio buttons and menu items of these kinds.
  checked = 4,
  editable = 7,
  /// A control that is greyed out may lack it; see `sensitive`.
  enabled = 8,
  /// Its parts are shown, as those of an open branch of a tree.
  expanded = 10,
  /// It has the keyboard, if its window has it.
  focused = 12,
  /// A window that is minimised.
  iconified = 15,
  /// A window that keeps the others of its application from being used.
  modal = 16,
  multiLine = 17,
  selectable = 22,
  /// Of items of a list, tabs, cells and the like.
  selected = 23,
  sensitive = 24, ///< the user can act on it
  /// It and all that it is in can be seen, unless something lies on top.
  showing = 25,
  /// It would be seen if all that it is in were.
  visible = 30,
  checkable = 41,
  /// It opens a menu or a list.
  hasPopup = 42,
};

/// The set of an element's states, as AT-SPI tells it: 64 bits, of which most states have no name here. Empty as made.
///
///     if (facts.states && facts.states->has(AccessibleState::showing)) ...
class AccessibleStates {
public:
  constexpr AccessibleStates() = default;
  /// The bit of a state is its number.
  constexpr explicit AccessibleStates(std::uint64_t bits) : bits_(bits) {}

  /// True when the element is in the state.
  [[nodiscard]] constexpr bool has(AccessibleState state) const {
    return (bits_ >> static_cast<unsigned>(state) & 1) != 0;
  }

private:
  /// Bits beyond the named states are kept and never asked for.
  std::uint64_t bits_ = 0;
};

/// The parts of elements that a reading asks for. Each is a question of its own: asking for fewer is faster.
///
///     const AccessibleParts parts{.name = true, .role = true};
/// None is asked for as made.
struct AccessibleParts {
  bool name = false;
  bool description = false;
  bool role = false;
  bool states = false;
  bool children = false;
  bool parent = false;
  /// Pairs of texts, with names that each toolkit chooses.
  bool attributes = false;
  /// Names only: an action is done by its position.
  bool actions = false;
  bool value = false;
  bool minimum = false;
  bool maximum = false;
  bool rows = false;
  bool columns = false;
  /// All of it is sent, however long it is.
  bool text = false;
  bool image = false;
  bool extents = false;
  /// For the application's own element alone.
  bool toolkit = false;
};

/// The answers about one element. A part is nothing when it wasn't asked for, when the element has no such part, and
/// when the element is gone. They aren't all of one moment: an application may change between two answers.
struct AccessibleFacts {
  std::optional<std::string> name;        ///< UTF-8, as the application writes it; may end in blanks
  std::optional<std::string> description; ///< often empty
  std::optional<AccessibleRole> role;
  std::optional<AccessibleStates> states;
  std::optional<std::vector<AccessibleElement>> children;                     ///< in the application's order
  std::optional<AccessibleElement> parent;                                    ///< as the application tells it
  std::optional<std::vector<std::pair<std::string, std::string>>> attributes; ///< of the toolkit's own making
  std::optional<std::vector<std::string>> actions; ///< names in the toolkit's words; the first does what a click does
  std::optional<double> value;                     ///< of sliders, progress bars and the like
  std::optional<double> minimum;                   ///< the least value that it can have
  std::optional<double> maximum;
  std::optional<int> rows; ///< of a table, those that its user can scroll to
  std::optional<int> columns;
  std::optional<std::string> text;    ///< the whole text of what holds one
  std::optional<std::string> image;   ///< of a picture: what it shows, often empty
  std::optional<Rectangle> extents;   ///< on the screen
  std::optional<std::string> toolkit; ///< of an application: "gtk", "Qt", "Gecko", "Chromium"
};

/// A place in a table, counted from 0. In the row `header` stand the heads of the columns.
struct AccessiblePlace {
  static constexpr int header = -1;

  AccessibleElement table;
  int row = 0;
  int column = 0;
};

/// The change of a selection: one is selected alone, or beside what is selected, or isn't any more.
enum class AccessibleSelection { only, added, removed };

/// An application that shows itself on the accessibility bus. Its own element stands for all of it; menus, controls and
/// dialogs are found below its windows.
struct AccessibleApplication {
  AccessibleElement root; ///< its children are its windows
  pid_t process = 0;
};

} // namespace tabwright::platform
