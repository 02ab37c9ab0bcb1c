#include "universal/images/image_tools.h"

#include <limits>
#include <ostream>

#include <gmock/gmock.h>

#include "platform/fonts/font_finder.h"
#include "tests/support/failure_text.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::failureText;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using Arguments = std::vector<std::string>;

class ImageToolsTest : public support::UniversalFixture {
 protected:
  /// A picture that is 120 x 200 to the user.
  ImageToolsTest() {
    const fs::path upright = folder_ / "upright.png";
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

struct ToolCase {
  const char* label;
  const char* id;
  Value::Map options;
  Arguments arguments;
};
void PrintTo(const ToolCase& c, std::ostream* out) {
  *out << c.label;
}
class ImageToolArgumentsTest : public ImageToolsTest,
                               public ::testing::WithParamInterface<ToolCase> {};

TEST_P(ImageToolArgumentsTest, TellsTheEngineWhatTheOptionsSay) {
  const fs::path output = run(GetParam().id, GetParam().options);
  EXPECT_EQ(output, workspace() / (std::string("result-") + GetParam().id + ".png"));
  EXPECT_THAT(ownArguments(), ElementsAreArray(GetParam().arguments));
  EXPECT_EQ(runsOf("magick").back().back(), output);
}

INSTANTIATE_TEST_SUITE_P(
    Tools,
    ImageToolArgumentsTest,
    ::testing::Values(ToolCase{"compress", "compress", {}, {"-strip"}},
                      ToolCase{"background by default",
                               "background",
                               {{"color", 7}},
                               {"-background", "#FFFFFF", "-alpha", "remove", "-alpha", "off"}},
                      ToolCase{"background in lower case",
                               "background",
                               {{"color", "#ffcc00"}},
                               {"-background", "#ffcc00", "-alpha", "remove", "-alpha", "off"}},
                      ToolCase{"crop by default", "crop", {}, {"-crop", "100x100+0+0", "+repage"}},
                      ToolCase{"crop to the last pixel",
                               "crop",
                               {{"x", "20"}, {"y", true}, {"width", 100.0}, {"height", 199}},
                               {"-crop", "100x199+20+1", "+repage"}},
                      ToolCase{"redact",
                               "redact",
                               {{"x", 119}, {"y", 199}, {"width", 1}, {"height", 1}},
                               {"-fill", "black", "-draw", "rectangle 119,199 119,199"}},
                      ToolCase{
                          "edit by default", "edit", {}, {"-rotate", "0", "-resize", "1600x1600>"}},
                      ToolCase{"edit",
                               "edit",
                               {{"rotation", 270}, {"maxDimension", "16"}},
                               {"-rotate", "270", "-resize", "16x16>"}}));

struct RefusalCase {
  const char* id;
  Value::Map options;
  const char* sentence;
};
void PrintTo(const RefusalCase& c, std::ostream* out) {
  *out << c.id << ": " << c.sentence;
}
class ImageToolRefusalTest : public ImageToolsTest,
                             public ::testing::WithParamInterface<RefusalCase> {};

TEST_P(ImageToolRefusalTest, SaysTheFirstThingThatIsWrong) {
  EXPECT_EQ(failureText([&] { return run(GetParam().id, GetParam().options); }),
            GetParam().sentence);
  EXPECT_FALSE(fs::exists(workspace() / (std::string("result-") + GetParam().id + ".png")));
}

constexpr const char* misfit =
    "The rectangle must fit within the oriented image's width and height.";
constexpr const char* badColor = "Enter a color such as #FFFFFF.";
constexpr const char* badText =
    "Keep annotations below 2,000 characters and start with literal text.";

INSTANTIATE_TEST_SUITE_P(
    Refusals,
    ImageToolRefusalTest,
    ::testing::Values(
        RefusalCase{"bleep", {}, "This image tool is unavailable."},
        RefusalCase{"compress", {{"quality", 2}}, "Quality must be between 0.1 and 1.0."},
        RefusalCase{"background", {{"color", "ffcc00"}, {"quality", 2}}, badColor},
        RefusalCase{"crop", {{"x", 20000.5}, {"y", -1}}, "X must be between 0.0 and 16384.0."},
        RefusalCase{"crop", {{"y", 1.5}, {"width", 0}}, "Y must be a whole number."},
        RefusalCase{"crop", {{"width", 0}}, "Width must be between 1.0 and 16384.0."},
        RefusalCase{"crop",
                    {{"height", std::numeric_limits<double>::quiet_NaN()}},
                    "Height must be between 1.0 and 16384.0."},
        RefusalCase{"crop", {{"x", 21}}, misfit},
        RefusalCase{"redact", {{"y", 100}, {"height", 101}, {"quality", 9}}, misfit},
        RefusalCase{"redact", {{"quality", 9}}, "Quality must be between 0.1 and 1.0."},
        RefusalCase{"edit",
                    {{"maxDimension", 15}, {"rotation", 45}},
                    "Maxdimension must be between 16.0 and 16384.0."},
        RefusalCase{"edit", {{"rotation", 45}}, "Choose a quarter-turn rotation."},
        RefusalCase{"edit", {{"rotation", 360}}, "Choose a quarter-turn rotation."},
        RefusalCase{"edit", {{"rotation", 20000}}, "Rotation must be between 0.0 and 16384.0."},
        RefusalCase{"annotate", {{"text", "@/etc/passwd"}, {"x", -1}}, badText},
        RefusalCase{"annotate", {{"text", std::string(2001, 'a')}}, badText},
        RefusalCase{
            "annotate", {{"y", -1}, {"color", "red"}}, "Y must be between 0.0 and 16384.0."},
        RefusalCase{"annotate", {{"color", "#FFFFF\n"}}, badColor}));

TEST_F(ImageToolsTest, FailsBeforeAnyEngineRunsExceptForTheFit) {
  for (const auto& [id, options] : {std::pair<const char*, Value::Map>{"crop", {{"x", -1}}},
                                    {"edit", {{"rotation", 1}}},
                                    {"annotate", {{"text", "@"}}},
                                    {"background", {{"color", ""}}}}) {
    EXPECT_NE(failureText([&, &id = id, &options = options] { return run(id, options); }), "");
  }
  EXPECT_THAT(runsOf("magick"), IsEmpty());
  EXPECT_EQ(failureText([&] { return run("crop", {{"x", 21}}); }), misfit);
  EXPECT_EQ(runsOf("magick").size(), 1U);
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
  EXPECT_THAT(ownArguments(),
              ElementsAreArray({"-font",
                                fontFinder().find("Helvetica", text)->string().c_str(),
                                "-fill",
                                "#00ff00",
                                "-pointsize",
                                "32",
                                "-gravity",
                                "NorthWest",
                                "-annotate",
                                "+3+20",
                                "50%% \"off\"\\ 'é'\n%%[fx:1]"}));
  run("annotate", {{"text", 12}});
  EXPECT_EQ(ownArguments().back(), "Note");
}

TEST_F(ImageToolsTest, CountsCharactersNotBytes) {
  std::string text;
  for (int i = 0; i < 2000; ++i) {
    text += "é";
  }
  run("annotate", {{"text", text}});
  EXPECT_EQ(ownArguments().back(), text);
}

}  // namespace

}  // namespace tolvane::UniversalEngine
