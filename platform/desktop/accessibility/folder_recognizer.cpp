#include "platform/desktop/accessibility/folder_recognizer.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <system_error>

#include "platform/files/file_names.h"

namespace tolvane::FolderRecognizer {

namespace {

using Path = std::filesystem::path;
using Role = AccessibleRole;

/// Every sub-row of a row of buttons is tried, so long rows cost.
constexpr std::size_t longestRow = 40;

class Candidates {
 public:
  Candidates(const std::string& title, const Path& home) : title_(title), home_(home) {}

  void addLocation(const std::string& text) {
    if (text.starts_with("file://")) {
      if (const auto path = FileNames::localPath(text)) {
        add(*path);
      }
    } else if (text == "~" || text.starts_with("~/")) {
      add(home_ / text.substr(std::min<std::size_t>(2, text.size())));
    } else if (text.starts_with('/')) {
      add(text);
    }
  }

  void addRow(std::vector<std::string> names) {
    if (names.size() > longestRow) {
      return;
    }
    addRunsOf(names);
    std::reverse(names.begin(), names.end());
    addRunsOf(names);
  }

  [[nodiscard]] const std::vector<Path>& folders() const { return folders_; }

 private:
  void addRunsOf(const std::vector<std::string>& names) {
    for (std::size_t first = 0; first < names.size(); ++first) {
      std::optional<Path> path = root(names[first]);
      for (std::size_t i = first; path && i < names.size(); ++i) {
        if (i > first) {
          path = names[i].empty() ? std::nullopt : std::optional(*path / names[i]);
        }
        if (path) {
          add(*path);
        }
      }
    }
  }

  [[nodiscard]] std::optional<Path> root(const std::string& name) const {
    if (name == "/" || name.empty()) {
      return "/";
    }
    return name == "Home" || name == home_.filename() ? std::optional(home_) : std::nullopt;
  }

  void add(const Path& path) {
    Path folder = path.lexically_normal();
    if (!folder.has_filename() && folder.has_relative_path()) {
      folder = folder.parent_path();  // "/a/"
    }
    std::error_code error;
    if (isTitleOf(title_, folder) && std::filesystem::is_directory(folder, error) &&
        std::find(folders_.begin(), folders_.end(), folder) == folders_.end()) {
      folders_.push_back(folder);
    }
  }

  const std::string& title_;
  const Path& home_;
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
  std::vector<std::string> names;
  for (const WindowNode& child : node.children) {
    if (isButton(child)) {
      names.push_back(child.name);
    }
    addRows(child, candidates);
  }
  candidates.addRow(std::move(names));
}

}  // namespace

std::vector<Path> candidates(const WindowNode& window, const Path& home) {
  Candidates found(window.name, home);
  addLocations(window, found);
  if (found.folders().empty()) {
    addRows(window, found);
  }
  return found.folders();
}

bool isTitleOf(const std::string& title, const Path& folder) {
  const auto startsWith = [&title](const std::string& name) {
    return !name.empty() && title.starts_with(name) &&
           (title.size() == name.size() || title[name.size()] == ' ');
  };
  return startsWith(folder.filename().string()) || startsWith(folder.string());
}

}  // namespace tolvane::FolderRecognizer
