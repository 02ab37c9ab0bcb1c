#include <chrono>
#include <cstdlib>
#include <functional>
#include <ostream>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/desktop/accessibility/accessibility_bus.h"
#include "platform/desktop/accessibility/atspi_file_manager_selection.h"
#include "platform/desktop/accessibility/atspi_tree.h"
#include "platform/desktop/front_application.h"
#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"
#include "tests/platform/accessibility/recorded_window.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::RecordedWindow;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

constexpr std::chrono::milliseconds messagingTimeout{50};

/// The buttons in the recorded windows stand for a folder in /tmp.
struct FoldersInTmp {
  FoldersInTmp() { ::setenv("TMPDIR", "/tmp", 1); }
};

class RecordedTest : public testing::Test {
 protected:
  RecordedTest() {
    fs::create_directories(home_ / "files/Folder");
    for (const char* const file : {"files/doc1.txt",
                                   "files/doc2.txt",
                                   "files/doc3.txt",
                                   "files/Folder/doc1.txt",
                                   "a1.txt"}) {
      home_.write(file, "x");
    }
  }

  void open(const std::string& name) {
    window_ = std::make_shared<RecordedWindow>(name, home_.path());
  }

  Names selected() {
    AtspiFileManagerSelection selection(
        window_,
        [this](std::uint64_t) {
          return WindowPlace{{100, 50}, title_, "/window/1"};
        },
        home_.path(),
        shown_,
        searchTime_);
    Names names;
    for (const auto& item : selection.items({fileManagerBundle, RecordedWindow::process, 1})) {
      names.push_back(item->lexically_relative(home_.path()));
    }
    return names;
  }

  /// The primary screen is at the right of one of 1000 by 500, which begins higher up.
  AccessibleElement::Reference applicationOf(std::int64_t process) {
    const auto fromPrimary = [](const Point& point) { return Point{point.x - 1000, point.y - 20}; };
    return AtspiTree(window_, shown_, fromPrimary).application(process, messagingTimeout);
  }
  AccessibleElement::Reference shownElement() {
    return applicationOf(RecordedWindow::process)->focusedElement();
  }

  /// A second window, whose element is called as told, while none is active.
  void openSecondBehindPalette(const std::string& name) {
    auto second = window_->application["children"][0];
    second["id"] = 1000;
    second["name"] = name;
    second["states"] = {25, 30};
    window_->application["children"][0]["states"] = {25, 30};
    window_->application["children"].push_back(second);
  }

  std::string title_ = "files";
  std::chrono::milliseconds searchTime_{60'000};
  FoldersInTmp foldersInTmp_;
  support::TemporaryFolder home_;
  std::shared_ptr<RecordedWindow> window_;
  std::shared_ptr<std::optional<ShownFile>> shown_ = std::make_shared<std::optional<ShownFile>>();
};

struct WindowCase {
  const char* name;
  Names selected;
};
void PrintTo(const WindowCase& c, std::ostream* out) {
  *out << c.name;
}
const Names doc1 = {"files/doc1.txt"};
const Names doc1And2 = {"files/doc1.txt", "files/doc2.txt"};

class FileManagerTest : public RecordedTest, public testing::WithParamInterface<WindowCase> {};
TEST_P(FileManagerTest, TellsWhatIsSelected) {
  open(GetParam().name);
  EXPECT_EQ(selected(), GetParam().selected);
}
INSTANTIATE_TEST_SUITE_P(Recorded,
                         FileManagerTest,
                         testing::Values(WindowCase{"nautilus_icons", doc1And2},
                                         WindowCase{"nautilus_list", doc1},
                                         WindowCase{"dolphin", doc1And2},
                                         WindowCase{"pcmanfm_qt", doc1And2},
                                         WindowCase{"nemo_icons", doc1And2},
                                         WindowCase{"nemo_home", {"a1.txt"}},
                                         WindowCase{"nemo_nested", {}},  // Folder/doc1.txt
                                         WindowCase{"thunar_list", doc1And2},
                                         WindowCase{"thunar_icons", doc1},
                                         WindowCase{"pcmanfm", doc1}));

struct DoubtCase {
  const char* label;
  const char* name;
  std::function<void(RecordedWindow& window, const fs::path& home)> change;
};
void PrintTo(const DoubtCase& c, std::ostream* out) {
  *out << c.label;
}

/// Of a change that gives an element another text.
auto retext(const char* key, const nlohmann::json& value, const nlohmann::json& by) {
  return [key, value, by](RecordedWindow& window, const fs::path&) {
    window.element(key, value)[key] = by;
  };
}

class DoubtTest : public RecordedTest, public testing::WithParamInterface<DoubtCase> {};
TEST_P(DoubtTest, LeavesTheSelectionEmpty) {
  open(GetParam().name);
  ASSERT_THAT(selected(), testing::Not(IsEmpty()));
  GetParam().change(*window_, home_.path());
  EXPECT_THAT(selected(), IsEmpty());
  EXPECT_FALSE(shown_->has_value());
}
INSTANTIATE_TEST_SUITE_P(
    Doubts,
    DoubtTest,
    testing::Values(
        DoubtCase{"more is selected than shown",
                  "nautilus_icons",
                  retext("name", "2 items selected", "641 items selected")},
        DoubtCase{
            "no count in a partial view", "nautilus_icons", retext("name", "2 items selected", "")},
        DoubtCase{"another count in the status bar",
                  "pcmanfm_qt",
                  retext("name", "2 item(s) selected (4 bytes)", "3 item(s) selected (6 bytes)")},
        DoubtCase{
            "a file is gone",
            "thunar_list",
            [](RecordedWindow&, const fs::path& home) { fs::remove(home / "files/doc2.txt"); }},
        DoubtCase{"a file has the name of what another column says",
                  "thunar_list",
                  [](RecordedWindow&, const fs::path& home) {
                    fs::create_directory(home / "files/2 bytes");
                  }},
        DoubtCase{"one name twice",
                  "dolphin",
                  [](RecordedWindow& window, const fs::path&) {
                    window.element("name", "doc2.txt")["name"] = "doc1.txt";
                  }},
        DoubtCase{"the location is being edited",
                  "pcmanfm",
                  [](RecordedWindow& window, const fs::path& home) {
                    window.element("text", (home / "files").string())["text"] =
                        (home / "files/Folder").string();
                  }},
        DoubtCase{"the title is of another folder",
                  "nemo_icons",
                  [](RecordedWindow& window, const fs::path&) {
                    window.element("role", 23)["name"] = "Folder";
                  }},
        DoubtCase{"a part of the path is shown under another name, and leads to a folder named as "
                  "the home",
                  "nemo_home",
                  retext("name", "tmp", "old disk \uFFFD")},
        DoubtCase{"the same, and nothing stands beside it",
                  "nemo_home",
                  [](RecordedWindow& window, const fs::path&) {
                    window.element("name", "tmp")["name"] = "old disk";
                    constexpr int deeperFolder = 128;
                    constexpr int label = 29;
                    window.element("id", deeperFolder)["role"] = label;
                  }},
        DoubtCase{
            "the breadcrumbs start at another place",
            "dolphin",
            [](RecordedWindow& window, const fs::path&) { window.confirmsLocations = false; }},
        DoubtCase{"tabs of two folders of one name",
                  "nautilus_icons",
                  [](RecordedWindow& window, const fs::path& home) {
                    fs::create_directories(home / "other/files");
                    fs::copy(home / "files", home / "other/files");
                    window.openWindows["/window/1"].push_back("file://" +
                                                              (home / "other/files").string());
                  }},
        DoubtCase{"an expanded row",
                  "dolphin",
                  [](RecordedWindow& window, const fs::path&) {
                    window.element("name", "Folder")["states"].push_back(10);
                  }},
        DoubtCase{"another application", "nemo_icons", [](RecordedWindow& window, const fs::path&) {
                    window.application["name"] = "gedit";
                  }}));

TEST_F(RecordedTest, WhileNoWindowIsActiveTheTitleTellsWhichIsInFront) {
  struct TitleCase {
    const char* second;
    const char* title;
    Names selected;
  };
  for (const TitleCase& c : {TitleCase{"other", "files", doc1},
                             TitleCase{"other", "files — PCManFM", doc1},
                             TitleCase{"files", "files", {}},
                             TitleCase{"files — 2", "files — 2", {}},
                             TitleCase{"other", "other", {}},
                             TitleCase{"other", "files2", {}},
                             TitleCase{"other", "", {}}}) {
    open("pcmanfm");
    openSecondBehindPalette(c.second);
    title_ = c.title;
    EXPECT_EQ(selected(), c.selected) << c.second << " / " << c.title;
  }
  open("pcmanfm");
  openSecondBehindPalette("files");
  window_->application["children"][1].erase("name");
  title_ = "files";
  EXPECT_THAT(selected(), IsEmpty()) << "the second may be called so as well";
}

TEST_F(RecordedTest, AFileManagerThatIsStuckIsGivenUpInTime) {
  open("dolphin");
  searchTime_ = std::chrono::milliseconds(20);
  const std::vector<std::set<Ask>> silences = {
      {Ask::name, Ask::children, Ask::role, Ask::states}, {Ask::children}, {Ask::states}};
  for (const std::set<Ask>& silence : silences) {
    window_->unanswered = silence;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_THROW(selected(), PlatformError);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_FALSE(shown_->has_value());
  }
}

TEST_F(RecordedTest, AnApplicationThatLeavesBeforeItsNameIsToldIsNotTakenForAnEmptySelection) {
  open("dolphin");
  window_->application.erase("name");
  EXPECT_THROW(selected(), PlatformError);
}

TEST_F(RecordedTest, TheTreeKnowsWhereTheSelectedFileIs) {
  open("nautilus_list");
  ASSERT_EQ(selected(), doc1);
  const auto element = shownElement();
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(element->url(), FileNames::localAddress(home_ / "files/doc1.txt"));
  EXPECT_EQ(element->isSelected(), true);
  EXPECT_EQ(element->position(), (Point{100 + 265 - 1000, 50 + 145 - 20}));
  EXPECT_EQ(element->size(), (Size{591, 44}));
  EXPECT_EQ(window_->extentsAsked, 1);
}

TEST_F(RecordedTest, TheTreeKnowsNoElementOfSeveralFiles) {
  open("nautilus_list");
  ASSERT_EQ(selected(), doc1);
  open("dolphin");
  ASSERT_EQ(selected(), doc1And2);
  EXPECT_EQ(shownElement(), nullptr);
}

TEST_F(RecordedTest, ElementsOfATreeTellOfThemselves) {
  open("dolphin");
  window_->element("role", 23)["extents"] = {1100, 80, 700, 500};
  const auto application = applicationOf(RecordedWindow::process);
  ASSERT_NE(application, nullptr);
  EXPECT_EQ(application->title(), "dolphin");
  const auto windows = application->children(100);
  ASSERT_EQ(windows.size(), 1U);
  EXPECT_EQ(windows[0]->title(), "files");
  EXPECT_EQ(windows[0]->url(), std::nullopt);
  EXPECT_EQ(windows[0]->position(), (Point{100, 60}));
  EXPECT_EQ(windows[0]->children(2).size(), 2U);
  EXPECT_EQ(applicationOf(1), nullptr);
}

TEST(AccessibilityBusTest, FailsWithoutASession) {
  ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus", 1);
  AccessibilityBus bus;
  const auto deadline = std::chrono::steady_clock::now() + messagingTimeout;
  EXPECT_THROW(static_cast<void>(bus.ask({{{":1.1", "/"}, Ask::name, 0, {}}}, deadline)),
               PlatformError);
}

}  // namespace
}  // namespace tolvane
