#include "platform/files/file_names.h"

#include <ostream>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct NameCase {
  const char* path;
  const char* extension;
  const char* stem;
};
void PrintTo(const NameCase& c, std::ostream* out) {
  *out << c.path;
}

const NameCase nameCases[] = {
    {"/a/Report.PDF", "PDF", "Report"},
    {"/a.b/Report", "", "Report"},
    {"archive.tar.gz", "gz", "archive.tar"},
    {".profile", "", ".profile"},
    {".profile.txt", "txt", ".profile"},
    {"Notes.", "", "Notes."},
    {"a..b", "b", "a."},
    {"..", "", ".."},
    {"", "", ""},
    {"Übung.Ä", "Ä", "Übung"},
};

class FileNamesTest : public testing::TestWithParam<NameCase> {};
TEST_P(FileNamesTest, SplitsAtTheLastDot) {
  EXPECT_EQ(FileNames::extension(GetParam().path), GetParam().extension);
  EXPECT_EQ(FileNames::stem(GetParam().path), GetParam().stem);
}
INSTANTIATE_TEST_SUITE_P(All, FileNamesTest, testing::ValuesIn(nameCases));

TEST(FileNames, ChangeTheCaseOfAsciiOnly) {
  EXPECT_EQ(FileNames::lowerExtension("a.TaR"), "tar");
  EXPECT_EQ(FileNames::lower("@AZ[az{ÄÖ"), "@az[az{ÄÖ");
  EXPECT_EQ(FileNames::upper("`az{AZ[äö"), "`AZ{AZ[äö");
}

}  // namespace
}  // namespace tolvane
