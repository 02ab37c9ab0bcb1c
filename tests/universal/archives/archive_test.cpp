#include "universal/archives/archive.h"

#include <map>
#include <tuple>

#include <gmock/gmock.h>

#include "tests/support/failure_text.h"
#include "tests/support/universal_fixture.h"
#include "tests/universal/archives/archive_builder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using namespace support;
using ::testing::ElementsAre;
/// Contents by name; folders end with a slash and hold nothing.
using Files = std::map<std::string, std::string>;

const Files everything = {{"d/", ""}, {"d/.hidden", "1"}, {"empty/", ""}, {"a..b", "2"}};

std::string everythingAsTar() {
  return tar({{"d/", "", '5'}, {"d/.hidden", "1"}, {"empty/", "", '5'}, {"a..b", "2"}});
}

class ArchiveTest : public UniversalFixture {
 protected:
  /// In an empty workspace.
  fs::path convert(const fs::path& input, const std::string& target) {
    fs::remove_all(workspace());
    fs::create_directories(workspace());
    fs::path output = workspace() / (target == "gz" ? "result.tar.gz" : "result." + target);
    UniversalEngine::archive(input, target, output, withEngines());
    return output;
  }
  Files filesIn(const fs::path& archive) {
    const fs::path folder = workspace() / "read";
    fs::create_directory(folder);
    if (archive.extension() == ".zip") {
      withEngines().run("unzip", {"-q", archive, "-d", folder}, 60, {archive});
    } else {
      withEngines().run("tar", {"-xf", archive, "-C", folder}, 60, {archive});
    }
    Files files;
    for (const auto& item : fs::recursive_directory_iterator(folder)) {
      const std::string name = fs::relative(item.path(), folder).string();
      files[name + (item.is_directory() ? "/" : "")] =
          item.is_directory() ? "" : contentOf(item.path());
    }
    return files;
  }
};

TEST_F(ArchiveTest, KeepsEveryEntryFromFormatToFormat) {
  const fs::path first = folder_.write("first.tar", everythingAsTar());
  for (const char* name : {"second.zip", "second.tar", "second.tar.gz"}) {
    fs::rename(convert(first, fs::path(name).extension().string().substr(1)), folder_ / name);
    for (const char* target : {"zip", "tar", "gz"}) {
      EXPECT_EQ(filesIn(convert(folder_ / name, target)), everything) << name << " to " << target;
    }
  }
  withEngines().run("7zz", {"a", workspace() / "third.7z", workspace() / "read/."}, 60);
  fs::rename(workspace() / "third.7z", folder_ / "third.7z");
  EXPECT_EQ(filesIn(convert(folder_ / "third.7z", "zip")), everything);
}

const std::tuple<std::string, std::string, std::string, Files> archiveInputCases[] = {
    {"gzipped file", "notes.gz", gzip("x", "notes.txt"), {{"notes.txt", "x"}}},
    {"gzipped TAR", "a.TAR.GZ", gzip(everythingAsTar()), everything},
    {"TAR by its content", "a.gzip", gzip(everythingAsTar(), "plain"), everything},
    {"TAR in a ZIP", "a.zip", zip({{"b.tar", "x"}}), {{"b.tar", "x"}}},
    {"TAR in a TAR, unwrapped once",
     "a.gz",
     gzip(tar({{"inner.gz", tar({{"c", "3"}})}}), "outer.gz"),
     {{"inner.gz", tar({{"c", "3"}})}}},
    {"two TARs", "a.gz", tar({{"b.tar", "1"}, {"c.tar", "2"}}), {{"b.tar", "1"}, {"c.tar", "2"}}},
    {"names that are no UTF-8",
     "a.tar",
     tar({{"b\xFF\xFE/\xE9", "1"}}),
     {{"b\xFF\xFE/", ""}, {"b\xFF\xFE/\xE9", "1"}}},
    {"line feeds in a name",
     "a.zip",
     zip({{"a\n\nPath = ok\nSize = 3", "1"}}),
     {{"a\n\nPath = ok\nSize = 3", "1"}}},
    {"wildcards in gzip", "a.gz", gzip(everythingAsTar(), "*.tar"), everything},
};

TEST_F(ArchiveTest, IsMadeIntoATar) {
  for (const auto& [label, name, archive, files] : archiveInputCases) {
    SCOPED_TRACE(label);
    const fs::path input = folder_.write(name, archive);
    EXPECT_EQ(filesIn(convert(input, "tar")), files);
  }
}

/// Names as the programs of their time and country wrote them.
const std::tuple<const char*, std::vector<std::string>, std::vector<std::string>> codePageCases[] =
    {{"German",
      {"Gr\x81\xE1"
       "e.txt",
       "\x9A"
       "ber/sch\x94n.txt"},
      {"Grüße.txt", "Über/schön.txt"}},
     {"French",
      {"\x82l\x8Av"
       "e br\x96l\x82"
       "e.txt"},
      {"élève brûlée.txt"}},
     {"Spanish", {"a\xA4os \xA8qu\x82?.txt"}, {"años ¿qué?.txt"}},
     {"Japanese",
      {"\x93\xFA\x96\x7B\x8C\xEA/\x83\x65\x83\x58\x83\x67.txt", "\x95\x5C\x8E\x86.txt"},
      {"日本語/テスト.txt", "表紙.txt"}},
     {"Japanese, katakana alone", {"\x83\x65\x83\x58\x83\x67 1.txt"}, {"テスト 1.txt"}},
     {"Japanese, letters for DOS",
      {"\x8E\xCA\x90^.txt", "\x8E\x8A\x90^.txt"},
      {"写真.txt", "至真.txt"}},
     {"Japanese with a backslash", {"\x95\x5C\x8E\x86.txt"}, {"表紙.txt"}},
     {"UTF-8 beside DOS",
      {"Žlutý.txt",
       "Gr\x81\xE1"
       "e.txt"},
      {"Žlutý.txt", "Grüße.txt"}}};

TEST_F(ArchiveTest, NamesInOldCodePagesBecomeUtf8) {
  for (const auto& [label, names, expected] : codePageCases) {
    std::vector<ZipEntry> entries;
    for (const std::string& name : names) {
      entries.push_back({.name = name, .content = "1", .host = ZipHost::dos});
    }
    const fs::path input = folder_.write("old.zip", zip(entries));
    for (const char* target : {"zip", "tar"}) {
      const Files files = filesIn(convert(input, target));
      for (const std::string& name : expected) {
        EXPECT_TRUE(files.contains(name)) << label << " to " << target << ": " << name;
      }
    }
  }
}

TEST_F(ArchiveTest, SaysWhatIsCutShort) {
  std::string content;
  for (unsigned number = 1; content.size() < 100'000; number = number * 1103515245 + 12345) {
    content += static_cast<char>(number >> 24U);  // nothing that could be compressed
  }
  for (const std::string& whole : {gzip(content, "a.txt"), gzip(tar({{"a", content}}))}) {
    for (const std::size_t size : {whole.size() / 2, whole.size() - 8}) {
      const fs::path input = folder_.write("cut.gz", whole.substr(0, size));
      EXPECT_EQ(failureText([&] { return convert(input, "zip"); }),
                "This archive is cut short. Get a complete copy of it.");
    }
  }
}

TEST_F(ArchiveTest, TakesNoNameForAPattern) {
  folder_.write("a1.zip", zip({{"other", "1"}}));
  EXPECT_EQ(filesIn(convert(folder_.write("a?.zip", zip({{"mine", "2"}})), "zip")),
            (Files{{"mine", "2"}}));
  const JobContext odd = withEngines().in(workspace() / "w*");
  fs::create_directory(odd.workspace);
  UniversalEngine::archive(folder_ / "a1.zip", "zip", odd.workspace / "result.zip", odd);
  fs::remove_all(workspace() / "read");
  EXPECT_EQ(filesIn(odd.workspace / "result.zip"), (Files{{"other", "1"}}));
}

TEST_F(ArchiveTest, TellsTheEnginesWhatTheyAreToDo) {
  standIn("7zz", "[ \"$1\" = a ] || echo 'Path = a'");
  standIn("tar");
  const auto run = [&](const char* target) {
    fs::remove_all(workspace());
    fs::create_directory(workspace());
    UniversalEngine::archive("/in.gz", target, workspace() / "result", withStandIns());
  };
  run("gz");
  EXPECT_THAT(linesOf("7zz"), ElementsAre("l -slt -ba /in.gz", "x -y -oWORK/payload /in.gz"));
  EXPECT_THAT(linesOf("tar"), ElementsAre("-czf WORK/result -C WORK/payload ."));
  run("tar");
  EXPECT_THAT(linesOf("tar"), ElementsAre("-cf WORK/result -C WORK/payload ."));
  run("zip");
  fs::rename(workspace() / "payload/7zz.runs", workspace() / "7zz.runs");
  EXPECT_THAT(linesOf("7zz"), ElementsAre("a -tzip WORK/result ."));
}

TEST_F(ArchiveTest, PassesEngineFailuresOn) {
  std::string damaged = zip({{"a", "content"}});
  damaged[damaged.find("content")] = 'C';
  EXPECT_EQ(failureText([&] { return convert(folder_.write("a.zip", damaged), "zip"); }),
            "7zz could not process this file (exit 2). Check that the file is valid and the "
            "selected options fit its content.");
  EXPECT_FALSE(fs::exists(workspace() / "result.zip"));
}

}  // namespace
}  // namespace tolvane
