#include "platform/desktop/accessibility/selection_recognizer.h"

#include <algorithm>
#include <set>
#include <string>
#include <system_error>

#include "platform/desktop/accessibility/count_label.h"

namespace tolvane {

namespace {

using Path = std::filesystem::path;
using Role = AccessibleRole;

/// A file of one row, or of the status bar.
struct Item {
  std::string name;
  std::optional<AccessibleReference> element;
};
using Items = std::vector<Item>;

void addViews(const WindowNode& node, std::vector<const ViewSelection*>& views) {
  if (node.selection) {
    views.push_back(&*node.selection);
  }
  for (const WindowNode& child : node.children) {
    addViews(child, views);
  }
}

void addLabels(const WindowNode& node, std::vector<std::string>& labels) {
  if ((node.role == Role::label || node.role == Role::statusBar) && !node.name.empty()) {
    labels.push_back(node.name);
  }
  for (const WindowNode& child : node.children) {
    addLabels(child, labels);
  }
}

/// The labels that may tell of the selection.
void addCountLabels(const WindowNode& node,
                    FileManagerFacts::CountLabel where,
                    std::vector<std::string>& labels) {
  using Where = FileManagerFacts::CountLabel;
  const auto isProgress = [](const WindowNode& child) { return child.role == Role::progressBar; };
  const bool isHere = where == Where::overView ||
                      (where == Where::statusBar && node.role == Role::statusBar) ||
                      (where == Where::besideProgress &&
                       std::any_of(node.children.begin(), node.children.end(), isProgress));
  if (isHere) {
    addLabels(node, labels);
    return;
  }
  for (const WindowNode& child : node.children) {
    addCountLabels(child, where, labels);
  }
}

std::vector<std::string> countLabels(const WindowNode& window, const FileManagerFacts& facts) {
  std::vector<std::string> labels;
  addCountLabels(window, facts.countLabel, labels);
  return labels;
}

bool isEntryOf(const Path& folder, const std::string& name) {
  if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos ||
      name.find('\0') != std::string::npos) {
    return false;
  }
  std::error_code error;
  return std::filesystem::exists(std::filesystem::symlink_status(folder / name, error));
}

/// @return the one of the texts that names an entry of the folder; nullopt when none does, or more
/// than one.
std::optional<std::string> nameIn(const Path& folder, const SelectedCell& cell) {
  std::set<std::string> names;
  for (const std::string& text : cell.texts) {
    if (isEntryOf(folder, text)) {
      names.insert(text);
    }
  }
  return names.size() == 1 ? std::optional(*names.begin()) : std::nullopt;
}

/// @return what the selected cells of one column name; nullopt unless each names an entry.
std::optional<Items> itemsOfColumn(const ViewSelection& view,
                                   std::size_t column,
                                   const Path& folder) {
  Items items;
  std::set<std::size_t> rows;
  for (const SelectedCell& cell : view.cells) {
    rows.insert(cell.position / view.columns);
    if (cell.position % view.columns == column) {
      auto name = nameIn(folder, cell);
      if (!name) {
        return std::nullopt;
      }
      items.push_back({std::move(*name), cell.reference});
    }
  }
  return items.size() == rows.size() ? std::optional(std::move(items)) : std::nullopt;
}

/// @return the names in the only column that holds names.
std::optional<Items> itemsIn(const ViewSelection& view, const Path& folder) {
  std::optional<Items> found;
  for (std::size_t column = 0; column < view.columns; ++column) {
    if (auto items = itemsOfColumn(view, column, folder)) {
      if (found) {
        return std::nullopt;
      }
      found = std::move(items);
    }
  }
  return found;
}

std::optional<Items> itemInStatusBar(const std::vector<std::string>& labels, const Path& folder) {
  std::set<std::string> names;
  for (const std::string& label : labels) {
    const std::string name = CountLabel::quotedName(label);
    if (isEntryOf(folder, name)) {
      names.insert(name);
    }
  }
  return names.size() == 1 ? std::optional(Items{{*names.begin(), std::nullopt}}) : std::nullopt;
}

/// @return whether all of it was read, and is of the folder that the window shows.
bool isWholeAndFlat(const ViewSelection& view) {
  return view.isCertain && std::none_of(view.cells.begin(),
                                        view.cells.end(),
                                        [](const SelectedCell& cell) { return cell.isNested; });
}

/// @return whether the file manager's own words agree, or there are none where they may be missing.
bool isConfirmed(const Items& items,
                 const std::vector<std::string>& labels,
                 const FileManagerFacts& facts) {
  std::vector<std::string> names;
  for (const Item& item : items) {
    names.push_back(item.name);
  }
  if (std::set<std::string>(names.begin(), names.end()).size() != names.size()) {
    return false;
  }
  return (labels.empty() && facts.view == FileManagerFacts::View::complete) ||
         std::any_of(labels.begin(), labels.end(), [&names](const std::string& label) {
           return CountLabel::confirms(label, names);
         });
}

RecognizedSelection selectionOf(const Items& items, const Path& folder) {
  RecognizedSelection selection;
  for (const Item& item : items) {
    selection.files.push_back(folder / item.name);
  }
  if (items.size() == 1) {
    selection.element = items.front().element;
  }
  return selection;
}

}  // namespace

RecognizedSelection SelectionRecognizer::selection(const WindowNode& window,
                                                   const FileManagerFacts& facts,
                                                   const std::vector<Path>& folders) {
  std::vector<const ViewSelection*> views;
  addViews(window, views);
  const bool isInStatusBar = views.empty() && facts.namesOneFileInStatusBar;
  if (!isInStatusBar &&
      (views.size() != 1 || !isWholeAndFlat(*views[0]) || views[0]->cells.empty())) {
    return {};
  }
  const std::vector<std::string> labels = countLabels(window, facts);
  std::optional<Items> items;
  Path folder;
  for (const Path& candidate : folders) {
    auto found = isInStatusBar ? itemInStatusBar(labels, candidate) : itemsIn(*views[0], candidate);
    if (found && items) {
      return {};
    }
    if (found) {
      items = std::move(found);
      folder = candidate;
    }
  }
  return items && isConfirmed(*items, labels, facts) ? selectionOf(*items, folder)
                                                     : RecognizedSelection{};
}

}  // namespace tolvane
