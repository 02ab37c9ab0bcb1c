#include "desktop/finder_selection_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"
#include "tests/support/desktop_fakes.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FakeElement final : public AccessibleElement {
 public:
  [[nodiscard]] std::optional<std::string> url() const override {
    if (visited) {
      visited();
    }
    return url_;
  }
  [[nodiscard]] std::optional<bool> isSelected() const override { return isSelected_; }
  [[nodiscard]] std::optional<std::string> title() const override { return title_; }
  [[nodiscard]] std::optional<Point> position() const override { return position_; }
  [[nodiscard]] std::optional<Size> size() const override { return size_; }
  [[nodiscard]] std::vector<Reference> children(std::size_t limit) const override {
    return first(limit, children_);
  }
  [[nodiscard]] std::vector<Reference> selectedChildren(std::size_t limit) const override {
    return first(limit, selectedChildren_);
  }
  [[nodiscard]] Reference focusedElement() const override { return focused_; }

  std::optional<std::string> url_;
  std::optional<bool> isSelected_;
  std::optional<std::string> title_;
  std::optional<Point> position_ = Point{100, 200};
  std::optional<Size> size_ = Size{64, 80};
  std::vector<Reference> children_;
  std::vector<Reference> selectedChildren_;
  Reference focused_;
  std::function<void()> visited;

 private:
  static std::vector<Reference> first(std::size_t limit, std::vector<Reference> all) {
    all.resize(std::min(limit, all.size()));
    return all;
  }
};

class FakeSelection final : public FileManagerSelection {
 public:
  [[nodiscard]] std::vector<Item> items(const RunningApplication& fileManager) override {
    EXPECT_EQ(fileManager.processIdentifier, 42);
    if (isRefused) {
      throw PlatformError("The file manager does not answer.");
    }
    return selected;
  }

  bool isRefused = false;
  std::vector<Item> selected;
};

class FakeTree final : public AccessibilityTree {
 public:
  [[nodiscard]] AccessibleElement::Reference application(std::int64_t processIdentifier,
                                                         milliseconds timeout) override {
    ++searches;
    EXPECT_EQ(processIdentifier, 42);
    EXPECT_EQ(timeout, milliseconds(50));
    return root;
  }

  int searches = 0;
  std::shared_ptr<FakeElement> root = std::make_shared<FakeElement>();
};

class FinderSelectionTest : public testing::Test {
 protected:
  FinderSelectionTest() {
    permissions_.isTrusted = true;
    front_.front = RunningApplication{"com.apple.finder", 42};
    screens_.screens = {{{0, 0, 1000, 800}, {0, 0, 1000, 770}}};
  }

  /// An element whose visit is counted and takes its time.
  std::shared_ptr<FakeElement> element() {
    auto made = std::make_shared<FakeElement>();
    made->visited = [this] {
      ++visits_;
      now_ += pace_;
    };
    return made;
  }
  std::shared_ptr<FakeElement> fileElement(const std::filesystem::path& path) {
    auto made = element();
    made->url_ = FileNames::localAddress(path);
    return made;
  }
  void add(const std::shared_ptr<FakeElement>& child) { tree_.root->children_.push_back(child); }

  std::optional<Rectangle> frameOfTarget() {
    selection_.selected = {target_};
    EXPECT_THAT(finder_.resolve(), ElementsAre(target_));
    return finder_.selectedFileFrame();
  }

  support::TemporaryFolder folder_;
  const std::filesystem::path target_ = folder_.write("Rep ort.pdf", "");
  const std::filesystem::path other_ = folder_.write("other.pdf", "");
  support::Calls calls_;
  support::FakeFrontApplication front_{calls_};
  support::FakePermissions permissions_;
  support::FakeScreens screens_;
  FakeSelection selection_;
  FakeTree tree_;
  milliseconds now_{0};
  milliseconds pace_{0};  // what a visit takes
  int visits_ = 0;
  FinderSelectionService finder_{{front_, selection_, tree_, permissions_, screens_},
                                 [this] { return std::chrono::steady_clock::time_point(now_); }};
};

const Rectangle frame{100, 520, 64, 80};  // 800 - (200 + 80)

TEST_F(FinderSelectionTest, FindsTheFrameOfASingleFile) {
  add(fileElement(other_));
  add(fileElement(target_));
  EXPECT_EQ(frameOfTarget(), frame);
}

TEST_F(FinderSelectionTest, LooksForNoFrameOfSeveralFiles) {
  selection_.selected = {target_, std::nullopt, other_};
  add(fileElement(target_));
  EXPECT_THAT(finder_.resolve(), ElementsAre(target_, other_));
  EXPECT_EQ(finder_.selectedFileFrame(), std::nullopt);
  EXPECT_EQ(tree_.searches, 0);
}

TEST_F(FinderSelectionTest, ForgetsTheLastFrameFirst) {
  add(fileElement(target_));
  frameOfTarget();
  front_.front->bundleIdentifier = "editor";
  EXPECT_THAT(finder_.resolve(), IsEmpty());
  EXPECT_EQ(finder_.selectedFileFrame(), std::nullopt);
  front_.front.reset();
  EXPECT_THAT(finder_.resolve(), IsEmpty());
}

TEST_F(FinderSelectionTest, ExplainsThatTheFileManagerCannotBeAsked) {
  selection_.isRefused = true;
  EXPECT_EQ(
      support::failureText([this] { return finder_.resolve(); }),
      "Finder selection is unavailable. Allow tolvane in System Settings → Privacy & Security "
      "→ Automation, or choose or drop a file.");
}

TEST_F(FinderSelectionTest, TakesNothingWhenAnyPathIsDoubtful) {
  for (const std::filesystem::path& doubtful : std::vector<std::filesystem::path>{
           folder_ / "gone.pdf",
           std::filesystem::path("other.pdf"),
           std::filesystem::path(),
           std::filesystem::path(std::string(other_.string() + '\0'))}) {
    selection_.selected = {target_, doubtful};
    EXPECT_THAT(finder_.resolve(), IsEmpty()) << doubtful;
  }
}

TEST_F(FinderSelectionTest, ReadsNoElementWithoutPermission) {
  permissions_.isTrusted = false;
  add(fileElement(target_));
  EXPECT_EQ(frameOfTarget(), std::nullopt);
  EXPECT_EQ(tree_.searches, 0);
}

struct MatchCase {
  const char* label;
  std::function<void(FakeElement& element, const std::filesystem::path& target)> change;
  bool isFound;
};
void PrintTo(const MatchCase& c, std::ostream* out) {
  *out << c.label;
}

class FinderMatchTest : public FinderSelectionTest,
                        public testing::WithParamInterface<MatchCase> {};

TEST_P(FinderMatchTest, FollowsTheRules) {
  const auto candidate = element();
  GetParam().change(*candidate, target_);
  add(candidate);
  EXPECT_EQ(frameOfTarget().has_value(), GetParam().isFound);
}

using Target = const std::filesystem::path&;

INSTANTIATE_TEST_SUITE_P(
    Matching,
    FinderMatchTest,
    testing::Values(
        MatchCase{"other spelling of the URL",
                  [](FakeElement& e, Target file) {
                    e.url_ = FileNames::localAddress(file.parent_path() / "." / file.filename());
                  },
                  true},
        MatchCase{"symbolic link to it",
                  [](FakeElement& e, Target file) {
                    const auto link = file.parent_path() / "link";
                    std::filesystem::create_symlink(file, link);
                    e.url_ = FileNames::localAddress(link);
                  },
                  true},
        MatchCase{"URL with a NUL", [](FakeElement& e, Target) { e.url_ = "file:///a%00"; }, false},
        MatchCase{"path that is no file URL",
                  [](FakeElement& e, Target file) { e.url_ = file.string(); },
                  false},
        MatchCase{"selected and named so",
                  [](FakeElement& e, Target) {
                    e.isSelected_ = true;
                    e.title_ = "Rep ort.pdf";
                  },
                  true},
        MatchCase{"named so",
                  [](FakeElement& e, Target) {
                    e.isSelected_ = false;
                    e.title_ = "Rep ort.pdf";
                  },
                  false},
        MatchCase{"selected, its name cut",
                  [](FakeElement& e, Target) {
                    e.isSelected_ = true;
                    e.title_ = "Rep ort";
                  },
                  false},
        MatchCase{"selected under another URL",
                  [](FakeElement& e, Target) {
                    e.url_ = "file:///elsewhere";
                    e.isSelected_ = true;
                    e.title_ = "Rep ort.pdf";
                  },
                  true}));

struct SizeCase {
  const char* label;
  std::optional<Point> position;
  std::optional<Size> size;
  bool isFound;
};
void PrintTo(const SizeCase& c, std::ostream* out) {
  *out << c.label;
}

class FinderFrameTest : public FinderSelectionTest, public testing::WithParamInterface<SizeCase> {};

TEST_P(FinderFrameTest, TakesPlausibleFramesOnAScreenAndSearchesOn) {
  const auto first = fileElement(target_);
  first->position_ = GetParam().position;
  first->size_ = GetParam().size;
  add(first);
  EXPECT_EQ(frameOfTarget().has_value(), GetParam().isFound);
  const auto next = element();
  next->focused_ = fileElement(target_);  // not looked at: only the application's is
  add(next);
  EXPECT_EQ(frameOfTarget().has_value(), GetParam().isFound);
  first->children_ = {fileElement(target_)};
  EXPECT_TRUE(frameOfTarget().has_value());
}

const Point seen{100, 200};
INSTANTIATE_TEST_SUITE_P(Frames,
                         FinderFrameTest,
                         testing::Values(SizeCase{"greatest", seen, Size{999.9, 399.9}, true},
                                         SizeCase{"wide row", seen, Size{1200, 20}, false},
                                         SizeCase{"just too wide", seen, Size{1000, 20}, false},
                                         SizeCase{"just too high", seen, Size{20, 400}, false},
                                         SizeCase{"no width", seen, Size{0, 20}, false},
                                         SizeCase{"negative", seen, Size{20, -1}, false},
                                         SizeCase{"no size", seen, {}, false},
                                         SizeCase{"no position", {}, Size{64, 80}, false},
                                         SizeCase{"last line", Point{0, 799}, Size{9, 9}, true},
                                         SizeCase{"below", Point{0, 800}, Size{9, 9}, false},
                                         SizeCase{
                                             "behind the bar", Point{0, 0}, Size{9, 30}, false},
                                         SizeCase{"partly", Point{0, 1}, Size{9, 30}, true}));

TEST_F(FinderSelectionTest, LooksAtTheSelectedChildrenAndTheFocusedElementToo) {
  for (int index = 0; index < 100; ++index) {
    add(element());
  }
  add(fileElement(target_));  // the 101st child
  EXPECT_EQ(frameOfTarget(), std::nullopt);
  EXPECT_EQ(visits_, 100);
  tree_.root->focused_ = fileElement(target_);
  EXPECT_EQ(frameOfTarget(), frame);
  tree_.root->focused_.reset();
  tree_.root->selectedChildren_.assign(20, element());
  tree_.root->selectedChildren_.push_back(fileElement(target_));  // the 21st
  EXPECT_EQ(frameOfTarget(), std::nullopt);
  tree_.root->selectedChildren_[19] = fileElement(target_);
  EXPECT_EQ(frameOfTarget(), frame);
}

TEST_F(FinderSelectionTest, VisitsAtMost250Elements) {
  // The application and its three groups of 100, 100 and (49 or 46 of) 100 below them.
  for (int group = 0; group < 3; ++group) {
    const auto parent = element();
    for (int index = 0; index < 100; ++index) {
      parent->children_.push_back(element());
    }
    add(parent);
  }
  const auto& last = std::static_pointer_cast<const FakeElement>(tree_.root->children_[2]);
  auto& leaves = const_cast<FakeElement&>(*last).children_;
  leaves[46] = fileElement(target_);  // the 251st element
  EXPECT_EQ(frameOfTarget(), std::nullopt);
  EXPECT_EQ(visits_, 249);
  leaves[45] = fileElement(target_);
  EXPECT_EQ(frameOfTarget(), frame);
}

TEST_F(FinderSelectionTest, StopsAtTheDeadline) {
  pace_ = milliseconds(45);
  for (int index = 0; index < 4; ++index) {
    add(element());
  }
  add(fileElement(target_));
  EXPECT_EQ(frameOfTarget(), std::nullopt);  // 4 * 45 ms = 180 ms: no time is left
  EXPECT_EQ(visits_, 4);
  pace_ = milliseconds(44);
  EXPECT_EQ(frameOfTarget(), frame);
}

TEST_F(FinderSelectionTest, FindsNothingWhereTheApplicationCannotBeReached) {
  tree_.root = nullptr;
  EXPECT_EQ(frameOfTarget(), std::nullopt);
}

}  // namespace
}  // namespace tolvane
