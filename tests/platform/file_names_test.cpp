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

struct AddressCase {
  const char* text;
  bool isAddress;
  std::optional<std::string> localPath;
};
void PrintTo(const AddressCase& c, std::ostream* out) {
  *out << c.text;
}

class AddressTest : public testing::TestWithParam<AddressCase> {};
TEST_P(AddressTest, IsToldFromAPath) {
  EXPECT_EQ(FileNames::isAddress(GetParam().text), GetParam().isAddress);
  EXPECT_EQ(FileNames::localPath(GetParam().text), GetParam().localPath);
}
INSTANTIATE_TEST_SUITE_P(All,
                         AddressTest,
                         testing::Values(AddressCase{"https://host/a.pdf", true, {}},
                                         AddressCase{"s3://bucket/a.pdf", true, {}},
                                         AddressCase{"file:///home/a%20b%", true, "/home/a b%"},
                                         AddressCase{"FILE://localhost/a", true, "/a"},
                                         AddressCase{"file://elsewhere/a", true, {}},
                                         AddressCase{"/a://b", false, {}},
                                         AddressCase{"://a", false, {}},
                                         AddressCase{"3d://a", false, {}},
                                         AddressCase{"file:/a", false, {}}));

TEST(FileNamesTest, TakesWordsForLocalFilesAndKeepsOtherAddresses) {
  EXPECT_EQ(FileNames::handedOver("a b.pdf", "/here"), "/here/a b.pdf");
  EXPECT_EQ(FileNames::handedOver("/a%20b.pdf", "/here"), "/a%20b.pdf");
  EXPECT_EQ(FileNames::handedOver("file:///a%20b.pdf", "/here"), "/a b.pdf");
  EXPECT_EQ(FileNames::handedOver("sftp://server/a.pdf", "/here"), "sftp://server/a.pdf");
}

TEST(FileNamesTest, WritesAddressesThatLeadBack) {
  EXPECT_EQ(FileNames::localAddress("/tmp/a-b_c.d~1/X"), "file:///tmp/a-b_c.d~1/X");
  const std::string path = "/a b/50%#?&+;=:@é\n/$(\"'";
  const std::string address = FileNames::localAddress(path);
  EXPECT_EQ(address, "file:///a%20b/50%25%23%3F%26%2B%3B%3D%3A%40%C3%A9%0A/%24%28%22%27");
  EXPECT_EQ(FileNames::localPath(address), path);
}

}  // namespace
}  // namespace tolvane
