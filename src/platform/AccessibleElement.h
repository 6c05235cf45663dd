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
/// that costs nothing to keep; it may outlive the element.
struct AccessibleElement {
  std::string application; ///< the application's name on the accessibility bus, such as ":1.7"
  std::string path;        ///< the element's within it

  friend bool operator==(const AccessibleElement&, const AccessibleElement&) = default;
};

/// The part that an element plays, by its number in AT-SPI 2 (`AtspiRole`). Elements may have roles that have no name
/// here.
enum class AccessibleRole : std::uint32_t {
  alert = 2,
  checkBox = 7,
  checkMenuItem = 8,
  colorChooser = 9,
  columnHeader = 10,
  comboBox = 11,
  dialog = 16,
  drawingArea = 18,
  fileChooser = 19,
  filler = 20,
  frame = 23,
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
  tearoffMenuItem = 59,
  terminal = 60,
  text = 61,
  toggleButton = 62,
  toolBar = 63,
  tree = 65,
  treeTable = 66,
  viewport = 68,
  window = 69,
  paragraph = 73,
  application = 75,
  entry = 79,
  documentFrame = 82,
  heading = 83,
  section = 85,
  form = 87,
  link = 88,
  tableRow = 90,
  treeItem = 91,
  documentText = 94,
  documentWeb = 95,
  listBox = 98,
  grouping = 99,
  notification = 101,
  infoBar = 102,
  levelBar = 103,
  staticText = 116,
};

/// A state that an element is in or not, by its number in AT-SPI 2 (`AtspiStateType`).
enum class AccessibleState : unsigned {
  active = 1, ///< the window has the keyboard
  checked = 4,
  editable = 7,
  enabled = 8,
  expanded = 10,
  focused = 12,
  iconified = 15,
  modal = 16,
  multiLine = 17,
  selectable = 22,
  selected = 23,
  sensitive = 24, ///< the user can act on it
  showing = 25,
  visible = 30,
  checkable = 41,
  hasPopup = 42,
};

class AccessibleStates {
public:
  constexpr AccessibleStates() = default;
  /// The bit of a state is its number.
  constexpr explicit AccessibleStates(std::uint64_t bits) : bits_(bits) {}

  [[nodiscard]] constexpr bool has(AccessibleState state) const {
    return (bits_ >> static_cast<unsigned>(state) & 1) != 0;
  }

private:
  std::uint64_t bits_ = 0;
};

/// The parts of elements that a reading asks for. Each is a question of its own: asking for fewer is faster.
struct AccessibleParts {
  bool name = false;
  bool description = false;
  bool role = false;
  bool states = false;
  bool children = false;
  bool parent = false;
  bool attributes = false;
  bool actions = false;
  bool value = false;
  bool minimum = false;
  bool maximum = false;
  bool rows = false;
  bool columns = false;
  bool text = false;
  bool image = false;
  bool extents = false;
  bool toolkit = false;
};

/// The answers about one element. A part is nothing when it wasn't asked for, when the element has no such part, and
/// when the element is gone.
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

/// What becomes of a selection: one is selected alone, or beside what is selected, or isn't any more.
enum class AccessibleSelection { only, added, removed };

/// An application that shows itself on the accessibility bus.
struct AccessibleApplication {
  AccessibleElement root; ///< its children are its windows
  pid_t process = 0;
};

} // namespace tabwright::platform
