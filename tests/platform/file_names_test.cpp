#include "platform/files/file_names.h"

#include <tuple>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

const std::tuple<std::string, std::string, std::string> nameCases[] = {
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

TEST(FileNamesTest, SplitsAtTheLastDot) {
  for (const auto& [path, extension, stem] : nameCases) {
    SCOPED_TRACE(path);
    EXPECT_EQ(FileNames::extension(path), extension);
    EXPECT_EQ(FileNames::stem(path), stem);
  }
}

TEST(FileNames, ChangeTheCaseOfAsciiOnly) {
  EXPECT_EQ(FileNames::lowerExtension("a.TaR"), "tar");
  EXPECT_EQ(FileNames::lower("@AZ[az{ÄÖ"), "@az[az{ÄÖ");
  EXPECT_EQ(FileNames::upper("`az{AZ[äö"), "`AZ{AZ[äö");
}

const std::tuple<const char*, bool, std::optional<std::string>> addressCases[] = {
    {"https://host/a.pdf", true, {}},
    {"s3://bucket/a.pdf", true, {}},
    {"file:///home/a%20b%", true, "/home/a b%"},
    {"FILE://localhost/a", true, "/a"},
    {"file://elsewhere/a", true, {}},
    {"/a://b", false, {}},
    {"://a", false, {}},
    {"3d://a", false, {}},
    {"file:/a", false, {}},
};

TEST(AddressTest, IsToldFromAPath) {
  for (const auto& [text, isAddress, localPath] : addressCases) {
    SCOPED_TRACE(text);
    EXPECT_EQ(FileNames::isAddress(text), isAddress);
    EXPECT_EQ(FileNames::localPath(text), localPath);
  }
}

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
