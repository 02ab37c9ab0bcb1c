#pragma once

#include <cstdint>
#include <string>

/// The words of the accessibility bus (AT-SPI 2).
namespace tolvane {

/// One element of an application's interface, as the bus names it.
struct AccessibleReference {
  std::string bus;
  std::string path;

  [[nodiscard]] bool isNull() const {
    return path.empty() || path == "/" || path == "/org/a11y/atspi/null";
  }
  friend bool operator==(const AccessibleReference&, const AccessibleReference&) = default;
};

/// Numbers of AtspiRole; the ones that mean something to us.
enum class AccessibleRole : std::uint32_t {
  unknown = 0,
  checkBox = 7,
  comboBox = 11,
  frame = 23,
  icon = 26,
  image = 27,
  label = 29,
  layeredPane = 30,
  list = 31,
  listItem = 32,
  menu = 33,
  menuBar = 34,
  menuItem = 35,
  pageTab = 37,
  popupMenu = 41,
  progressBar = 42,
  pushButton = 43,
  radioButton = 44,
  scrollBar = 48,
  separator = 50,
  slider = 51,
  statusBar = 54,
  table = 55,
  tableCell = 56,
  tableColumnHeader = 57,
  text = 61,
  toggleButton = 62,
  toolBar = 63,
  tree = 65,
  treeTable = 66,
  entry = 79,
  infoBar = 102,
};

/// A set of AtspiStateType.
struct AccessibleStates {
  static constexpr unsigned active = 1;
  static constexpr unsigned checked = 4;
  static constexpr unsigned expanded = 10;
  static constexpr unsigned selected = 23;
  static constexpr unsigned showing = 25;
  static constexpr unsigned visible = 30;

  std::uint64_t bits = 0;

  [[nodiscard]] bool has(unsigned state) const { return ((bits >> state) & 1U) != 0; }
};

}  // namespace tolvane
