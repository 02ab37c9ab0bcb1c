#include "platform/desktop/accessibility/tree_reader.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <iterator>
#include <utility>

namespace tolvane {

namespace {

using Role = AccessibleRole;

constexpr std::size_t maximumElements = 800;  // four times what the widest known window holds
constexpr std::size_t maximumChildren = 100;  // of an element that lists no files
constexpr std::size_t roleCount = 256;        // more than AT-SPI knows
constexpr std::size_t maximumHeaders = 24;    // columns of a view
constexpr int textDepth = 3;                  // how deep a cell's name lies in it at most

/// Below these stands nothing that we look for.
constexpr std::array leaves = {Role::comboBox,  Role::icon,        Role::image,
                               Role::label,     Role::list,        Role::listItem,
                               Role::menu,      Role::menuBar,     Role::menuItem,
                               Role::popupMenu, Role::progressBar, Role::pushButton,
                               Role::checkBox,  Role::radioButton, Role::toggleButton,
                               Role::scrollBar, Role::separator,   Role::slider,
                               Role::table,     Role::tableCell,   Role::tableColumnHeader,
                               Role::text,      Role::tree,        Role::treeTable,
                               Role::entry,     Role::infoBar};

/// These tell something by their name, or by the text in them.
constexpr std::array named = {Role::frame,
                              Role::label,
                              Role::statusBar,
                              Role::pushButton,
                              Role::toggleButton,
                              Role::checkBox,
                              Role::radioButton};
constexpr std::array entries = {Role::text, Role::entry};

template <typename List>
bool isIn(const List& list, Role role) {
  return std::find(std::begin(list), std::end(list), role) != std::end(list);
}

/// Qt adds the program's name to what the element of the window is called.
bool isTitleOf(const std::string& title, const std::string& frame) {
  return !frame.empty() && (title == frame || title.starts_with(frame + " — "));
}

bool isShown(const WindowNode& node, const FileManagerFacts& facts) {
  return node.states.has(facts.shownState);
}

bool isView(const WindowNode& node,
            const std::bitset<roleCount>& within,
            const FileManagerFacts& facts) {
  return std::any_of(facts.views.begin(), facts.views.end(), [&](const auto& view) {
    return view.role == node.role && within.test(static_cast<std::size_t>(view.within));
  });
}

bool isWorthDescending(const WindowNode& node, const FileManagerFacts& facts) {
  const bool holdsViews =
      std::any_of(facts.views.begin(), facts.views.end(), [&node](const auto& view) {
        return view.within == node.role;
      });
  if (!isShown(node, facts) || (isIn(leaves, node.role) && !holdsViews)) {
    return false;
  }
  return node.role != Role::toolBar || facts.folder != FileManagerFacts::Folder::openWindows;
}

}  // namespace

/// A node that is still to be read.
struct TreeReader::Place {
  WindowNode* node = nullptr;
  std::bitset<roleCount> within;  ///< the roles of what stands around it
};

/// @return the answers of the first element in the order asked, then those of the second, ...
TreeReader::Answers TreeReader::askEach(const References& elements,
                                        std::initializer_list<Ask> asks) {
  std::vector<AccessibleQuestion> questions;
  questions.reserve(elements.size() * asks.size());
  for (const AccessibleReference& element : elements) {
    for (const Ask ask : asks) {
      questions.push_back({element, ask, 0, {}});
    }
  }
  return questions_.ask(questions, deadline_);
}

std::optional<AccessibleReference> TreeReader::application(std::int64_t processIdentifier) {
  const AccessibleReference registry = {"org.a11y.atspi.Registry",
                                        "/org/a11y/atspi/accessible/root"};
  const References applications = askEach({registry}, {Ask::children}).front().references;
  const Answers processes = askEach(applications, {Ask::processIdentifier});
  for (std::size_t i = 0; i < applications.size(); ++i) {
    if (processes[i].isAnswered && std::cmp_equal(processes[i].number, processIdentifier)) {
      return applications[i];
    }
  }
  return std::nullopt;
}

std::optional<std::string> TreeReader::name(const AccessibleReference& element) {
  AccessibleAnswer answer = askEach({element}, {Ask::name}).front();
  return answer.isAnswered ? std::optional(std::move(answer.text)) : std::nullopt;
}

/// @return none when one of them does not tell what it is called.
TreeReader::References TreeReader::framesOf(const std::string& title, const References& frames) {
  const Answers names = askEach(frames, {Ask::name});
  References found;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    if (!names[i].isAnswered) {
      return {};
    }
    if (isTitleOf(title, names[i].text)) {
      found.push_back(frames[i]);
    }
  }
  return found;
}

std::optional<AccessibleReference> TreeReader::activeFrame(const AccessibleReference& application,
                                                           const std::string& title) {
  const References windows = askEach({application}, {Ask::children}).front().references;
  const Answers answers = askEach(windows, {Ask::role, Ask::states});
  References active;
  References shown;
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const AccessibleStates state{answers[2 * i + 1].number};
    if (Role(answers[2 * i].number) == Role::frame && state.has(AccessibleStates::showing)) {
      shown.push_back(windows[i]);
      if (state.has(AccessibleStates::active)) {
        active.push_back(windows[i]);
      }
    }
  }
  if (active.empty()) {
    // None is while the palette has the keyboard, and GTK 2 does not tell that its window was
    // active from the start.
    active = shown.size() > 1 ? framesOf(title, shown) : shown;
  }
  return active.size() == 1 ? std::optional(active.front()) : std::nullopt;
}

std::optional<WindowNode> TreeReader::activeWindow(const AccessibleReference& application,
                                                   const std::string& title,
                                                   const FileManagerFacts& facts) {
  const auto frame = activeFrame(application, title);
  if (!frame) {
    return std::nullopt;
  }
  WindowNode root;
  root.reference = *frame;
  std::vector<Place> level = {{&root, {}}};
  std::size_t count = 0;
  while (!level.empty()) {
    count += level.size();
    if (count > maximumElements || !readLevel(level, facts)) {
      return std::nullopt;
    }
  }
  readTexts(root);
  return Deadline::clock::now() < deadline_ ? std::optional(std::move(root)) : std::nullopt;
}

/// Reads the nodes of the level, and what is selected in its views, and makes it the level below.
/// @return false when the deadline has passed.
bool TreeReader::readLevel(std::vector<Place>& level, const FileManagerFacts& facts) {
  const std::vector<References> children = readNodes(level);
  std::vector<Place> below;
  for (std::size_t i = 0; i < level.size(); ++i) {
    WindowNode& node = *level[i].node;
    if (isShown(node, facts) && isView(node, level[i].within, facts)) {
      node.selection = selectionIn(children[i], node.reference);
    } else if (isWorthDescending(node, facts)) {
      auto within = level[i].within;
      within.set(static_cast<std::size_t>(node.role) % roleCount);
      node.children.resize(std::min(children[i].size(), maximumChildren));
      for (std::size_t child = 0; child < node.children.size(); ++child) {
        node.children[child].reference = children[i][child];
        below.push_back({&node.children[child], within});
      }
    }
  }
  level = std::move(below);
  return Deadline::clock::now() < deadline_;
}

/// All but the texts of the nodes. @return the children of each.
std::vector<TreeReader::References> TreeReader::readNodes(const std::vector<Place>& level) {
  References elements;
  for (const Place& place : level) {
    elements.push_back(place.node->reference);
  }
  Answers answers = askEach(elements, {Ask::role, Ask::states, Ask::children});
  std::vector<References> children;
  for (std::size_t i = 0; i < level.size(); ++i) {
    WindowNode& node = *level[i].node;
    node.role = Role(answers[3 * i].number);
    node.states = {answers[3 * i + 1].number};
    children.push_back(std::move(answers[3 * i + 2].references));
  }
  return children;
}

/// The names and texts of all nodes that tell something by them, at once.
void TreeReader::readTexts(WindowNode& root) {
  std::vector<AccessibleQuestion> questions;
  std::vector<std::string*> texts;
  std::vector<WindowNode*> nodes = {&root};
  while (!nodes.empty()) {
    WindowNode& node = *nodes.back();
    nodes.pop_back();
    if (isIn(named, node.role)) {
      questions.push_back({node.reference, Ask::name, 0, {}});
      texts.push_back(&node.name);
    } else if (isIn(entries, node.role)) {
      questions.push_back({node.reference, Ask::text, 0, {}});
      texts.push_back(&node.text);
    }
    for (WindowNode& child : node.children) {
      nodes.push_back(&child);
    }
  }
  Answers answers = questions_.ask(questions, deadline_);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    *texts[i] = std::move(answers[i].text);
  }
}

ViewSelection TreeReader::selectionIn(const References& cells, const AccessibleReference& view) {
  const References first(
      cells.begin(),
      cells.begin() + static_cast<std::ptrdiff_t>(std::min(cells.size(), maximumHeaders)));
  std::vector<AccessibleQuestion> questions = {{view, Ask::selectedCount, 0, {}}};
  for (const AccessibleReference& cell : first) {
    questions.push_back({cell, Ask::role, 0, {}});
  }
  const Answers answers = questions_.ask(questions, deadline_);
  const AccessibleAnswer& count = answers.front();
  const auto headers = static_cast<std::size_t>(
      std::count_if(answers.begin() + 1, answers.end(), [](const AccessibleAnswer& answer) {
        return Role(answer.number) == Role::tableColumnHeader;
      }));
  ViewSelection selection =
      count.isAnswered ? listedSelection(view, static_cast<std::size_t>(count.number))
                       : scannedSelection(References(
                             cells.begin() + static_cast<std::ptrdiff_t>(headers), cells.end()));
  selection.columns = std::max<std::size_t>(headers, 1);
  readCellTexts(selection);
  selection.isCertain = selection.isCertain && Deadline::clock::now() < deadline_;
  return selection;
}

/// Of a view that keeps a list of what is selected in it.
ViewSelection TreeReader::listedSelection(const AccessibleReference& view, std::size_t count) {
  std::vector<AccessibleQuestion> questions;
  for (std::size_t i = 0; i < count; ++i) {
    questions.push_back({view, Ask::selectedChild, static_cast<int>(i), {}});
  }
  ViewSelection selection;
  References found;
  for (const AccessibleAnswer& answer : questions_.ask(questions, deadline_)) {
    if (answer.references.size() != 1 || answer.references.front().isNull()) {
      selection.isCertain = false;
      return selection;
    }
    found.push_back(answer.references.front());
  }
  const Answers parents = askEach(found, {Ask::parentRow});
  for (std::size_t i = 0; i < count; ++i) {
    const References& rows = parents[i].references;
    const bool isNested =
        std::any_of(rows.begin(), rows.end(), [&view](const auto& row) { return row != view; });
    selection.cells.push_back({found[i], i, {}, isNested});
  }
  return selection;
}

/// Of a view whose cells tell each for itself whether they are selected.
ViewSelection TreeReader::scannedSelection(const References& cells) {
  ViewSelection selection;
  const Answers states = askEach(cells, {Ask::states});
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const AccessibleStates state{states[i].number};
    if (!states[i].isAnswered || state.has(AccessibleStates::expanded)) {
      selection.isCertain = false;
    }
    if (state.has(AccessibleStates::selected)) {
      selection.cells.push_back({cells[i], i, {}, false});
    }
  }
  return selection;
}

void TreeReader::readCellTexts(ViewSelection& selection) {
  References elements;
  std::vector<std::size_t> owners;
  for (std::size_t i = 0; i < selection.cells.size(); ++i) {
    elements.push_back(selection.cells[i].reference);
    owners.push_back(i);
  }
  for (int depth = 0; depth < textDepth && !elements.empty(); ++depth) {
    const Answers answers = askEach(elements, {Ask::name, Ask::children});
    References below;
    std::vector<std::size_t> ownersBelow;
    for (std::size_t i = 0; i < elements.size(); ++i) {
      const std::string& name = answers[2 * i].text;
      if (!name.empty()) {
        selection.cells[owners[i]].texts.push_back(name);
      }
      for (const AccessibleReference& child : answers[2 * i + 1].references) {
        below.push_back(child);
        ownersBelow.push_back(owners[i]);
      }
    }
    elements = std::move(below);
    owners = std::move(ownersBelow);
  }
}

}  // namespace tolvane
