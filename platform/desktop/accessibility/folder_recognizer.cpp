#include "platform/desktop/accessibility/folder_recognizer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "platform/files/file_names.h"

namespace tolvane::FolderRecognizer {

namespace {

using Path = std::filesystem::path;
using Role = AccessibleRole;

/// Every sub-row of a row of buttons is tried, so long rows cost.
constexpr std::size_t longestRow = 40;

/// A button of a row.
struct Part {
  std::string name;
  bool isPressed = false;  ///< the button of the folder that is shown
};
using Row = std::vector<Part>;

bool startsWithName(const std::string& title, const std::string& name) {
  return !name.empty() && title.starts_with(name) &&
         (title.size() == name.size() || title[name.size()] == ' ');
}

class Candidates {
 public:
  Candidates(const std::string& title, const Path& home, RowStart start)
      : title_(title), home_(home), start_(start) {}

  void addLocation(const std::string& text) {
    if (text.starts_with("file://")) {
      if (const auto path = FileNames::localPath(text)) {
        addTitled(*path);
      }
    } else if (text == "~" || text.starts_with("~/")) {
      addTitled(home_ / text.substr(std::min<std::size_t>(2, text.size())));
    } else if (text.starts_with('/')) {
      addTitled(text);
    }
  }

  void addRow(Row row) {
    if (row.size() > longestRow) {
      return;
    }
    addRunsOf(row);
    std::reverse(row.begin(), row.end());
    addRunsOf(row);
  }

  [[nodiscard]] const std::vector<Path>& folders() const { return folders_; }

 private:
  void addRunsOf(const Row& row) {
    for (std::size_t first = 0; first < row.size(); ++first) {
      if (const std::optional<Path> start = startOf(row, first)) {
        addRun(row, first, *start);
      }
    }
  }

  /// @param path the place of the row's button `first`.
  void addRun(const Row& row, std::size_t first, Path path) {
    addIfShown(row[first], path);
    for (std::size_t i = first + 1; i < row.size() && !row[i].name.empty(); ++i) {
      path /= row[i].name;
      addIfShown(row[i], path);
    }
  }

  /// A file manager may call the user's home by another name than the disk does.
  void addIfShown(const Part& part, const Path& path) {
    if (part.isPressed || startsWithName(title_, part.name)) {
      add(path);
    }
  }

  [[nodiscard]] std::optional<Path> startOf(const Row& row, std::size_t index) const {
    if (isRoot(row, index)) {
      return "/";
    }
    return isHome(row[index].name) ? std::optional(home_) : std::nullopt;
  }

  /// A button without a name may be any place's, unless nothing with a name stands before it.
  static bool isRoot(const Row& row, std::size_t index) {
    const auto end = row.begin() + static_cast<std::ptrdiff_t>(index);
    return row[index].name == "/" ||
           (row[index].name.empty() &&
            std::all_of(row.begin(), end, [](const Part& part) { return part.name.empty(); }));
  }

  [[nodiscard]] bool isHome(const std::string& name) const {
    return start_ == RowStart::rootOrPlace && (name == "Home" || name == home_.filename());
  }

  void addTitled(const Path& path) {
    const Path folder = withoutEnd(path);
    if (isTitleOf(title_, folder)) {
      add(folder);
    }
  }

  void add(const Path& path) {
    const Path folder = withoutEnd(path);
    std::error_code error;
    if (std::filesystem::is_directory(folder, error) &&
        std::find(folders_.begin(), folders_.end(), folder) == folders_.end()) {
      folders_.push_back(folder);
    }
  }

  /// @return "/a" for "/a/".
  static Path withoutEnd(const Path& path) {
    const Path folder = path.lexically_normal();
    return !folder.has_filename() && folder.has_relative_path() ? folder.parent_path() : folder;
  }

  const std::string& title_;
  const Path& home_;
  RowStart start_;
  std::vector<Path> folders_;
};

void addLocations(const WindowNode& node, Candidates& candidates) {
  for (const WindowNode& child : node.children) {
    if (child.states.has(AccessibleStates::showing)) {
      candidates.addLocation(child.text);
    }
    addLocations(child, candidates);
  }
}

bool isButton(const WindowNode& node) {
  constexpr std::array buttons = {
      Role::pushButton, Role::toggleButton, Role::checkBox, Role::radioButton};
  return std::find(buttons.begin(), buttons.end(), node.role) != buttons.end();
}

void addRows(const WindowNode& node, Candidates& candidates) {
  Row row;
  for (const WindowNode& child : node.children) {
    if (isButton(child)) {
      row.push_back({child.name, child.states.has(AccessibleStates::checked)});
    }
    addRows(child, candidates);
  }
  candidates.addRow(std::move(row));
}

}  // namespace

std::vector<Path> candidates(const WindowNode& window, const Path& home, RowStart start) {
  Candidates found(window.name, home, start);
  addLocations(window, found);
  if (found.folders().empty()) {
    addRows(window, found);
  }
  return found.folders();
}

bool isTitleOf(const std::string& title, const Path& folder) {
  return startsWithName(title, folder.filename().string()) ||
         startsWithName(title, folder.string());
}

}  // namespace tolvane::FolderRecognizer
