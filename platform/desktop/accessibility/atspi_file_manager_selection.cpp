#include "platform/desktop/accessibility/atspi_file_manager_selection.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "platform/desktop/accessibility/folder_recognizer.h"
#include "platform/desktop/accessibility/selection_recognizer.h"
#include "platform/desktop/accessibility/tree_reader.h"
#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

constexpr const char* noAnswer = "The file manager does not answer in time.";
constexpr const char* nautilus = "org.gnome.Nautilus";
/// Dolphin numbers the windows of a process from 1; few users have more.
constexpr int dolphinWindows = 4;

/// @return the local folders among the addresses that the title names, without repetitions.
std::vector<std::filesystem::path> foldersOfTitle(const std::vector<std::string>& addresses,
                                                  const std::string& title) {
  std::set<std::filesystem::path> folders;
  for (const std::string& address : addresses) {
    const auto path = FileNames::localPath(address);
    if (path && (addresses.size() == 1 || FolderRecognizer::isTitleOf(title, *path))) {
      folders.insert(*path);
    }
  }
  return {folders.begin(), folders.end()};
}

}  // namespace

AtspiFileManagerSelection::AtspiFileManagerSelection(
    std::shared_ptr<AccessibleQuestions> questions,
    WindowPlaces places,
    std::filesystem::path home,
    std::shared_ptr<std::optional<ShownFile>> shown,
    std::chrono::milliseconds searchTime)
    : questions_(std::move(questions)),
      places_(std::move(places)),
      home_(std::move(home)),
      shown_(std::move(shown)),
      searchTime_(searchTime) {}

std::vector<FileManagerSelection::Item> AtspiFileManagerSelection::items(
    const RunningApplication& fileManager) {
  shown_->reset();
  const auto deadline = Deadline::clock::now() + searchTime_;
  TreeReader reader(*questions_, deadline);
  const auto application = reader.application(fileManager.processIdentifier);
  if (!application) {
    throw PlatformError("The file manager does not show its elements.");
  }
  const auto name = reader.name(*application);
  if (!name) {
    throw PlatformError(noAnswer);
  }
  const FileManagerFacts* const facts = fileManagerFacts(*name);
  if (facts == nullptr) {
    return {};
  }
  const auto place = places_(fileManager.window);
  const auto window = reader.activeWindow(*application, place ? place->title : "", *facts);
  const RecognizedSelection found =
      window ? SelectionRecognizer::selection(
                   *window, *facts, folders(*window, *facts, fileManager, deadline))
             : RecognizedSelection();
  if (Deadline::clock::now() >= deadline) {
    throw PlatformError(noAnswer);
  }
  if (found.element) {
    *shown_ = ShownFile{fileManager.processIdentifier,
                        *found.element,
                        found.files.front(),
                        place ? place->origin : Point()};
  }
  return {found.files.begin(), found.files.end()};
}

AtspiFileManagerSelection::Paths AtspiFileManagerSelection::folders(
    const WindowNode& window,
    const FileManagerFacts& facts,
    const RunningApplication& fileManager,
    Deadline deadline) const {
  switch (facts.folder) {
    case FileManagerFacts::Folder::openWindows:
      return openFolders(window, fileManager, deadline);
    case FileManagerFacts::Folder::breadcrumbOfPlaces:
      return confirmedFolders(
          FolderRecognizer::candidates(window, home_, FolderRecognizer::RowStart::rootOrPlace),
          fileManager.processIdentifier,
          deadline);
    case FileManagerFacts::Folder::toolBar:
      break;
  }
  return FolderRecognizer::candidates(window, home_, FolderRecognizer::RowStart::root);
}

/// By the file manager's own list of its windows and the tabs in them.
AtspiFileManagerSelection::Paths AtspiFileManagerSelection::openFolders(
    const WindowNode& window, const RunningApplication& fileManager, Deadline deadline) const {
  const AccessibleReference owner = {nautilus, "/"};
  const auto answers = questions_->ask(
      {{owner, Ask::processIdentifier, 0, {}}, {owner, Ask::openLocations, 0, {}}}, deadline);
  if (!answers[0].isAnswered || !std::cmp_equal(answers[0].number, fileManager.processIdentifier)) {
    return {};
  }
  const auto& windows = answers[1].locations;
  const auto place = places_(fileManager.window);
  const auto own = place ? windows.find(place->objectPath) : windows.end();
  if (own != windows.end()) {
    return foldersOfTitle(own->second, window.name);
  }
  return windows.size() == 1 ? foldersOfTitle(windows.begin()->second, window.name) : Paths();
}

/// Those that the file manager says a window of its own shows: a place may have any name, also that
/// of the user's home.
AtspiFileManagerSelection::Paths AtspiFileManagerSelection::confirmedFolders(
    const Paths& candidates, std::int64_t processIdentifier, Deadline deadline) const {
  std::vector<AccessibleQuestion> questions;
  for (const std::filesystem::path& folder : candidates) {
    for (int number = 1; number <= dolphinWindows; ++number) {
      const AccessibleReference window = {"org.kde.dolphin-" + std::to_string(processIdentifier),
                                          "/dolphin/Dolphin_" + std::to_string(number)};
      questions.push_back({window, Ask::hasOpenLocation, 0, FileNames::localAddress(folder)});
    }
  }
  const auto answers = questions_->ask(questions, deadline);
  Paths confirmed;
  for (std::size_t i = 0; i < questions.size(); ++i) {
    const std::filesystem::path& folder = candidates[i / dolphinWindows];
    if (answers[i].number == 1 && (confirmed.empty() || confirmed.back() != folder)) {
      confirmed.push_back(folder);
    }
  }
  return confirmed;
}

}  // namespace tolvane
