#include "universal/images/image.h"

#include <ostream>

#include <gmock/gmock.h>

#include "tests/support/failure_text.h"
#include "tests/support/universal_fixture.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::failureText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Arguments = std::vector<std::string>;

class ImageTest : public support::UniversalFixture {};

struct FormatCase {
  const char* output;
  bool isFlattened;
};
void PrintTo(const FormatCase& c, std::ostream* out) {
  *out << c.output;
}
class ImageFormatTest : public ImageTest, public ::testing::WithParamInterface<FormatCase> {};

TEST_P(ImageFormatTest, GivesTheWholeCommandLine) {
  standIn("magick", "echo \"$MAGICK_TEMPORARY_PATH\" > temporary");
  const fs::path output = workspace() / GetParam().output;
  image("/in/a b.png", output, {"-negate"}, {{"quality", 0.57}}, withStandIns());

  Arguments expected = {"-limit",
                        "memory",
                        "128MiB",
                        "-limit",
                        "map",
                        "256MiB",
                        "-limit",
                        "disk",
                        "512MiB",
                        "-limit",
                        "time",
                        "60",
                        "/in/a b.png[0]",
                        "-auto-orient",
                        "-negate"};
  if (GetParam().isFlattened) {
    expected.insert(expected.end(), {"-background", "white", "-alpha", "remove", "-alpha", "off"});
  }
  // 0.57 * 100 is a little below 57.
  expected.insert(expected.end(), {"-strip", "-quality", "56", output.string()});
  EXPECT_THAT(runsOf("magick"), ElementsAre(expected));
  EXPECT_EQ(support::contentOf(workspace() / "temporary"), workspace().string() + "\n");
}

INSTANTIATE_TEST_SUITE_P(Formats,
                         ImageFormatTest,
                         ::testing::Values(FormatCase{"result.jpg", true},
                                           FormatCase{"result.BMP", true},
                                           FormatCase{"result.heic", true},
                                           FormatCase{"result.jpeg", false},
                                           FormatCase{"result.avif", false},
                                           FormatCase{"result.png", false}));

TEST_F(ImageTest, ChecksTheQualityBeforeItRuns) {
  standIn("magick");
  for (const Value& quality : {Value(0.09), Value(1.01), Value("nan"), Value("2"), Value(false)}) {
    EXPECT_EQ(failureText([&] {
                image("/in.png", workspace() / "o.png", {}, {{"quality", quality}}, withStandIns());
                return 0;
              }),
              "Quality must be between 0.1 and 1.0.");
  }
  EXPECT_THAT(runsOf("magick"), IsEmpty());
}

TEST_F(ImageTest, NormalizesIntoFreshFiles) {
  standIn("magick");
  const fs::path first = normalized("/in.heic", withStandIns());
  const fs::path second = normalized("/in.heic", withStandIns());
  EXPECT_NE(first, second);
  EXPECT_EQ(first.parent_path(), workspace());
  EXPECT_THAT(first.filename().string(),
              ::testing::MatchesRegex("normalized-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}.png"));
  EXPECT_THAT(runsOf("magick").front(),
              ElementsAre("-limit",
                          "memory",
                          "128MiB",
                          "-limit",
                          "map",
                          "256MiB",
                          "-limit",
                          "disk",
                          "512MiB",
                          "-limit",
                          "time",
                          "60",
                          "/in.heic[0]",
                          "-auto-orient",
                          "-strip",
                          "-quality",
                          "90",
                          first.string()));
}

}  // namespace

}  // namespace tolvane::UniversalEngine
