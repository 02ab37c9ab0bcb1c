#include "universal/images/image_tools.h"

#include <limits>

#include <gmock/gmock.h>

#include "platform/fonts/font_finder.h"
#include "tests/support/failure_text.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::failureText;
using support::words;
using Arguments = std::vector<std::string>;

class ImageToolsTest : public support::UniversalFixture {
 protected:
  /// A picture that is 120 x 200 to the user.
  ImageToolsTest() {
    const fs::path upright = workspace() / "upright.png";
    support::writePng(upright, support::gradient(120, 200, PixelLayout::rgb));
    standIn("magick", "cp '" + upright.string() + "' \"$output\"");
  }

  fs::path run(const std::string& id,
               const Value::Map& options,
               const fs::path& input = "/in.png") {
    return imageTool({input, FileKind::image, ""}, id, options, withStandIns());
  }

  /// Of the last run, between the picture and the output.
  [[nodiscard]] Arguments ownArguments() const {
    const Arguments last = runsOf("magick").back();
    return {last.begin() + 14, last.end() - 4};
  }
};

const struct {
  std::string id;
  Value::Map options;
  Arguments arguments;
} argumentCases[] = {
    {"compress", {}, {"-strip"}},
    {"background", {{"color", 7}}, words("-background #FFFFFF -alpha remove -alpha off")},
    {"background", {{"color", "#ffcc00"}}, words("-background #ffcc00 -alpha remove -alpha off")},
    {"crop", {}, {"-crop", "100x100+0+0", "+repage"}},
    {"crop",
     {{"x", "20"}, {"y", true}, {"width", 100.0}, {"height", 199}},
     {"-crop", "100x199+20+1", "+repage"}},
    {"redact",
     {{"x", 119}, {"y", 199}, {"width", 1}, {"height", 1}},
     {"-fill", "black", "-draw", "rectangle 119,199 119,199"}},
    {"edit", {}, {"-rotate", "0", "-resize", "1600x1600>"}},
    {"edit", {{"rotation", 270}, {"maxDimension", "16"}}, {"-rotate", "270", "-resize", "16x16>"}},
};

TEST_F(ImageToolsTest, TellsTheEngineWhatTheOptionsSay) {
  for (const auto& [id, options, arguments] : argumentCases) {
    const fs::path output = run(id, options);
    EXPECT_EQ(output, workspace() / ("result-" + id + ".png"));
    EXPECT_EQ(ownArguments(), arguments) << id;
    EXPECT_EQ(runsOf("magick").back().back(), output);
  }
}

constexpr const char* misfit =
    "The rectangle must fit within the oriented image's width and height.";
constexpr const char* badColor = "Enter a color such as #FFFFFF.";
constexpr const char* badText =
    "Keep annotations below 2,000 characters and start with literal text.";

const struct {
  std::string id;
  Value::Map options;
  std::string sentence;
} refusalCases[] = {
    {"bleep", {}, "This image tool is unavailable."},
    {"compress", {{"quality", 2}}, "Quality must be between 0.1 and 1.0."},
    {"background", {{"color", "ffcc00"}, {"quality", 2}}, badColor},
    {"crop", {{"x", 20000.5}, {"y", -1}}, "X must be between 0.0 and 16384.0."},
    {"crop", {{"y", 1.5}, {"width", 0}}, "Y must be a whole number."},
    {"crop", {{"width", 0}}, "Width must be between 1.0 and 16384.0."},
    {"crop",
     {{"height", std::numeric_limits<double>::quiet_NaN()}},
     "Height must be between 1.0 and 16384.0."},
    {"crop", {{"x", 21}}, misfit},
    {"redact", {{"y", 100}, {"height", 101}, {"quality", 9}}, misfit},
    {"redact", {{"quality", 9}}, "Quality must be between 0.1 and 1.0."},
    {"edit",
     {{"maxDimension", 15}, {"rotation", 45}},
     "Maxdimension must be between 16.0 and 16384.0."},
    {"edit", {{"rotation", 45}}, "Choose a quarter-turn rotation."},
    {"edit", {{"rotation", 360}}, "Choose a quarter-turn rotation."},
    {"edit", {{"rotation", 20000}}, "Rotation must be between 0.0 and 16384.0."},
    {"annotate", {{"text", "@/etc/passwd"}, {"x", -1}}, badText},
    {"annotate", {{"text", std::string(2001, 'a')}}, badText},
    {"annotate", {{"y", -1}, {"color", "red"}}, "Y must be between 0.0 and 16384.0."},
    {"annotate", {{"color", "#FFFFF\n"}}, badColor},
};

TEST_F(ImageToolsTest, SaysTheFirstThingThatIsWrong) {
  for (const auto& c : refusalCases) {
    SCOPED_TRACE(c.id + ": " + c.sentence);
    const std::size_t runs = runsOf("magick").size();
    EXPECT_EQ(failureText([&] { return run(c.id, c.options); }), c.sentence);
    EXPECT_FALSE(fs::exists(workspace() / ("result-" + c.id + ".png")));
    // The fit alone is judged by a copy of the picture.
    EXPECT_EQ(runsOf("magick").size() - runs, c.sentence == misfit || c.id == "redact" ? 1U : 0U);
  }
}

TEST_F(ImageToolsTest, TakesACopyThatCannotBeReadForAMisfit) {
  standIn("magick", "echo junk > \"$output\"");
  EXPECT_EQ(failureText([&] { return run("crop", {}); }), misfit);
  standIn("magick");
  EXPECT_EQ(failureText([&] { return run("crop", {}); }), misfit);
}

TEST_F(ImageToolsTest, KeepsCompressedPhotosJpeg) {
  EXPECT_EQ(run("compress", {}, "/photo.JPEG"), workspace() / "result-compress.jpg");
  EXPECT_EQ(run("edit", {}, "/photo.jpg"), workspace() / "result-edit.png");
}

TEST_F(ImageToolsTest, AnnotatesWithWhatTheMachineHasForHelvetica) {
  const std::string text = "50% \"off\"\\ 'é'\n%[fx:1]";
  run("annotate", {{"text", text}, {"x", 3}, {"color", "#00ff00"}});
  Arguments expected =
      words("-font FONT -fill #00ff00 -pointsize 32 -gravity NorthWest -annotate +3+20");
  expected[1] = fontFinder().find("Helvetica", text)->string();
  expected.emplace_back("50%% \"off\"\\\\ 'é'\n%%[fx:1]");
  EXPECT_EQ(ownArguments(), expected);
  run("annotate", {{"text", 12}});
  EXPECT_EQ(ownArguments().back(), "Note");
}

TEST_F(ImageToolsTest, CountsCharactersNotBytes) {
  const std::string text = support::repeated("é", 2000);
  run("annotate", {{"text", text}});
  EXPECT_EQ(ownArguments().back(), text);
}

}  // namespace

}  // namespace tolvane::UniversalEngine
