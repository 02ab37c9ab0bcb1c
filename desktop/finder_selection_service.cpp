#include "desktop/finder_selection_service.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <system_error>
#include <utility>

#include "desktop/native_policies.h"
#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

using FilePath = FinderSelection::Path;

constexpr std::chrono::milliseconds messagingTimeout{50};
constexpr std::chrono::milliseconds searchTime{180};
constexpr std::size_t maximumVisits = 250;
constexpr std::size_t maximumChildren = 100;
constexpr std::size_t maximumSelectedChildren = 20;

/// A path that leads nowhere shows that the answer as a whole is not to be trusted.
bool leadsSomewhere(const FilePath& path) {
  std::error_code error;
  return path.is_absolute() && path.native().find('\0') == std::string::npos &&
         std::filesystem::exists(std::filesystem::symlink_status(path, error));
}

/// The file that is looked for.
class Target {
 public:
  explicit Target(const FilePath& file)
      : resolved_(FileSystem::resolved(file)),
        name_((file.has_filename() ? file : file.parent_path()).filename().string()) {}

  [[nodiscard]] bool matches(const AccessibleElement& element) const {
    return isUrlOfTarget(element) ||
           (element.isSelected().value_or(false) && element.title() == name_);
  }

 private:
  [[nodiscard]] bool isUrlOfTarget(const AccessibleElement& element) const {
    const auto url = element.url();
    const auto path = url ? FileNames::localPath(*url) : std::nullopt;
    try {
      return path && FileSystem::resolved(*path) == resolved_;
    } catch (const PlatformError&) {  // a path that the system cannot have
      return false;
    }
  }

  FilePath resolved_;
  std::string name_;
};

/// Breadth first. What was taken counts as visited.
class SearchQueue {
 public:
  using Reference = AccessibleElement::Reference;

  explicit SearchQueue(Reference application) { add(std::move(application)); }

  [[nodiscard]] bool isDone() const { return waiting_.empty() || visited_ >= maximumVisits; }

  Reference take() {
    Reference first = std::move(waiting_.front());
    waiting_.pop_front();
    ++visited_;
    return first;
  }

  /// @param element the one that was taken last.
  void addRelatives(const AccessibleElement& element) {
    for (Reference& child : element.children(maximumChildren)) {
      add(std::move(child));
    }
    for (Reference& child : element.selectedChildren(maximumSelectedChildren)) {
      add(std::move(child));
    }
    if (visited_ == 1) {
      add(element.focusedElement());
    }
  }

 private:
  void add(Reference element) {
    if (element != nullptr) {
      waiting_.push_back(std::move(element));
    }
  }

  std::deque<Reference> waiting_;
  std::size_t visited_ = 0;
};

}  // namespace

FinderSelectionService::FinderSelectionService(const Surroundings& surroundings, Clock clock)
    : desktop_(surroundings), clock_(std::move(clock)) {}

std::vector<FilePath> FinderSelectionService::resolve() {
  selectedFileFrame_.reset();
  const auto front = desktop_.frontApplication.current();
  if (!front || front->bundleIdentifier != fileManagerBundle) {
    return {};
  }
  std::vector<FilePath> files = selectedFiles(*front);
  if (files.size() == 1) {
    selectedFileFrame_ = selectedFrame(front->processIdentifier, files.front());
  }
  return files;
}

std::vector<FilePath> FinderSelectionService::selectedFiles(
    const RunningApplication& fileManager) const {
  std::vector<FileManagerSelection::Item> items;
  try {
    items = desktop_.selection.items(fileManager);
  } catch (const PlatformError&) {
    throw ConversionFailure::message(
        "Finder selection is unavailable. Allow tolvane in System Settings → Privacy & Security → "
        "Automation, or choose or drop a file.");
  }
  std::vector<FilePath> files;
  for (FileManagerSelection::Item& item : items) {
    if (item) {
      files.push_back(std::move(*item));
    }
  }
  return std::all_of(files.begin(), files.end(), leadsSomewhere) ? files : std::vector<FilePath>();
}

std::optional<Rectangle> FinderSelectionService::selectedFrame(std::int64_t processIdentifier,
                                                               const FilePath& file) const {
  if (!desktop_.permissions.isTrustedForAccessibility()) {
    return std::nullopt;
  }
  SearchQueue queue(desktop_.tree.application(processIdentifier, messagingTimeout));
  const Target target(file);
  const auto deadline = clock_() + searchTime;
  while (!queue.isDone() && clock_() < deadline) {
    const AccessibleElement::Reference element = queue.take();
    if (target.matches(*element)) {
      const auto found = frame(*element);
      if (found && isOnScreen(*found)) {
        return found;
      }
    }
    queue.addRelatives(*element);
  }
  return std::nullopt;
}

std::optional<Rectangle> FinderSelectionService::frame(const AccessibleElement& element) const {
  const auto position = element.position();
  const auto size = element.size();
  if (!position || !size || !(size->width > 0 && size->height > 0) ||
      !(size->width < 1000 && size->height < 400)) {
    return std::nullopt;
  }
  const std::vector<Screen> screens = desktop_.screens.all();
  const double top = screens.empty() ? 0 : screens.front().frame.maxY();
  return NativePolicies::appKitFrame({position->x, position->y, size->width, size->height}, top);
}

bool FinderSelectionService::isOnScreen(const Rectangle& frame) const {
  const std::vector<Screen> screens = desktop_.screens.all();
  return std::any_of(screens.begin(), screens.end(), [&frame](const Screen& screen) {
    return frame.intersects(screen.visibleFrame);
  });
}

}  // namespace tolvane
