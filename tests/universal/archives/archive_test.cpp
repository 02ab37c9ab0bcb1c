#include "universal/archives/archive.h"

#include <map>
#include <ostream>

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
using Arguments = std::vector<std::string>;
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
      withEngines().run("unzip", {"-q", archive, "-d", folder}, 60);
    } else {
      withEngines().run("tar", {"-xf", archive, "-C", folder}, 60);
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

struct InputCase {
  const char* label;
  const char* name;
  std::string archive;
  Files files;
};
void PrintTo(const InputCase& c, std::ostream* out) {
  *out << c.label;
}

class ArchiveInputTest : public ArchiveTest, public ::testing::WithParamInterface<InputCase> {};
TEST_P(ArchiveInputTest, IsMadeIntoATar) {
  const fs::path input = folder_.write(GetParam().name, GetParam().archive);
  EXPECT_EQ(filesIn(convert(input, "tar")), GetParam().files);
}
INSTANTIATE_TEST_SUITE_P(
    All,
    ArchiveInputTest,
    ::testing::Values(
        InputCase{"gzipped file", "notes.gz", gzip("x", "notes.txt"), {{"notes.txt", "x"}}},
        InputCase{"gzipped TAR", "a.TAR.GZ", gzip(everythingAsTar()), everything},
        InputCase{"TAR by its content", "a.gzip", gzip(everythingAsTar(), "plain"), everything},
        InputCase{"TAR in a ZIP", "a.zip", zip({{"b.tar", "x"}}), {{"b.tar", "x"}}},
        InputCase{"TAR in a TAR, unwrapped once",
                  "a.gz",
                  gzip(tar({{"inner.gz", tar({{"c", "3"}})}}), "outer.gz"),
                  {{"inner.gz", tar({{"c", "3"}})}}},
        InputCase{"two TARs",
                  "a.gz",
                  tar({{"b.tar", "1"}, {"c.tar", "2"}}),
                  {{"b.tar", "1"}, {"c.tar", "2"}}},
        InputCase{"names that are no UTF-8",
                  "a.tar",
                  tar({{"b\xFF\xFE/\xE9", "1"}}),
                  {{"b\xFF\xFE/", ""}, {"b\xFF\xFE/\xE9", "1"}}},
        InputCase{"line feeds in a name",
                  "a.zip",
                  zip({{"a\n\nPath = ok\nSize = 3", "1"}}),
                  {{"a\n\nPath = ok\nSize = 3", "1"}}},
        InputCase{"wildcards in gzip", "a.gz", gzip(everythingAsTar(), "*.tar"), everything}));

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

TEST_F(ArchiveTest, AllowsTenThousandEntries) {
  std::vector<TarEntry> entries;
  for (int entry = 0; entry < 10'000; ++entry) {
    entries.push_back({"folder" + std::to_string(entry / 100) + "/" + std::to_string(entry), "x"});
  }
  EXPECT_EQ(filesIn(convert(folder_.write("a.tar", tar(entries)), "tar")).size(), 10'100U);
  entries.push_back({"more"});
  EXPECT_EQ(failureText([&] { return convert(folder_.write("b.tar", tar(entries)), "tar"); }),
            "This archive contains unsafe paths, links or too much expanded data.");
}

TEST_F(ArchiveTest, TellsTheEnginesWhatTheyAreToDo) {
  standIn("7zz", "[ \"$1\" = a ] || echo 'Path = a'");
  standIn("tar");
  const std::string payload = workspace() / "payload";
  const std::string output = workspace() / "result";
  const auto run = [&](const char* target) {
    fs::remove_all(workspace());
    fs::create_directory(workspace());
    UniversalEngine::archive("/in.gz", target, output, withStandIns());
  };
  run("gz");
  EXPECT_THAT(runsOf("7zz"),
              ElementsAre(Arguments{"l", "-slt", "-ba", "/in.gz"},
                          Arguments{"x", "-y", "-o" + payload, "/in.gz"}));
  EXPECT_THAT(runsOf("tar"), ElementsAre(Arguments{"-czf", output, "-C", payload, "."}));
  run("tar");
  EXPECT_THAT(runsOf("tar"), ElementsAre(Arguments{"-cf", output, "-C", payload, "."}));
  run("zip");
  EXPECT_EQ(contentOf(fs::path(payload) / "7zz.runs"),
            "\x1E"
            "a\x1F-tzip\x1F" +
                output + "\x1F.\x1F");
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
