#include <csignal>
#include <cstdlib>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program_fixture.h"
#include "tests/support/pdf_builder.h"

namespace tolvane {
namespace {

using support::ProgramTest;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

TEST_F(ProgramTest, PrintsResultsOnePathALine) {
  EXPECT_EQ(run({"action", "pdf_jpeg", path("a.pdf"), "--out", results().string()}), 0);
  EXPECT_EQ(out(),
            (results() / "a-page-1.jpg\n").string() + (results() / "a-page-2.jpg\n").string());
  EXPECT_EQ(err(), "");
}

TEST_F(ProgramTest, MakesTheFolderOfResultsAndTakesItBackAfterAFailure) {
  const std::string fresh = path("fresh");
  EXPECT_EQ(run({"action", "split_pdf", path("a.pdf"), "--out", fresh, "--set", "range=9"}), 1);
  EXPECT_EQ(err(), "Use page ranges such as 1-3, 5 within this document.\n");
  EXPECT_FALSE(std::filesystem::exists(fresh));
  EXPECT_EQ(run({"action", "split_pdf", path("a.pdf"), "--out", fresh}), 0);
  EXPECT_EQ(out(), fresh + "/a-split.pdf\n");
}

TEST_F(ProgramTest, PrintsJson) {
  EXPECT_EQ(run({"--json", "action", "resize", path("a.pdf")}), 1);
  EXPECT_THAT(out(),
              AllOf(HasSubstr(R"("status":"failed")"),
                    HasSubstr(R"("error":"All selected files must be images for this action.")")));
  EXPECT_EQ(run({"inspect", "--json", path("a.pdf"), path("missing")}), 1);
  EXPECT_THAT(out(), AllOf(HasSubstr(R"("detail":"2 pages · PDF")"), HasSubstr(R"("error":)")));
}

TEST_F(ProgramTest, TellsWrongUsageFromFailure) {
  EXPECT_EQ(run({}), 2);
  EXPECT_EQ(run({"convrt"}), 2);
  EXPECT_EQ(err(), "There is no command convrt. See tolvane --help.\n");
  EXPECT_EQ(run({"action", "pdf_png"}), 2);
  EXPECT_EQ(run({"inspect", path("missing")}), 1);
}

TEST_F(ProgramTest, RefusesOptionsThatWouldDoNothing) {
  const std::string pdf = path("a.pdf");
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"convert", pdf, "--to", "txt", "--set", "orc=false"}, "orc, only ocr."},
      {{"convert", pdf, "--to", "png", "--set", "dpi=300"}, "dpi, nor any other."},
      {{"tool", "metadata", pdf, "--set", "dpi=300"}, "dpi, nor any other."},
      {{"tool", "split", pdf, "--set", "rnage=1"}, "rnage, only range."},
      {{"tool", "rotate", pdf, "--set", "range=2"}, "range, nor any other."},
      {{"action", "rotate_pdf", pdf, "--set", "range=2"}, "range, nor any other."}};
  for (const auto& [words, expected] : cases) {
    EXPECT_EQ(run(words), 2);
    EXPECT_EQ(err(), std::string("This has no option ") + expected + " See tolvane --help.\n");
  }
}

TEST_F(ProgramTest, AToolTakesTheOptionsThatItsOfferShows) {
  ASSERT_EQ(run({"action", "pdf_jpeg", path("a.pdf")}), 0);
  const auto compressed = [this](const std::vector<std::string>& settings) {
    std::vector<std::string> words = {"tool", "compress", path("a-page-1.jpg")};
    words.insert(words.end(), settings.begin(), settings.end());
    EXPECT_EQ(run(words), 0) << err();
    return support::contentOf(path("result-compress.jpg"));
  };
  const std::string shown = compressed({});
  std::filesystem::remove(path("result-compress.jpg"));
  EXPECT_EQ(compressed({"--set", "quality=0.75"}), shown);
  std::filesystem::remove(path("result-compress.jpg"));
  EXPECT_NE(compressed({"--set", "quality=0.9"}), shown);
}

TEST_F(ProgramTest, ResultsFollowTheNameThatWasGivenAlsoThroughALink) {
  std::filesystem::create_symlink(path("a.pdf"), path("minutes.pdf"));
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"action", "split_pdf"}, "minutes-split.pdf"},
      {{"action", "merge_pdf"}, "minutes-combined.pdf"},
      {{"convert", "--to", "txt"}, "minutes.txt"},
      {{"convert", "--to", "png"}, "minutes-page-1.png"}};
  for (auto [words, expected] : cases) {
    words.insert(words.end(), {path("minutes.pdf"), "--out", results().string()});
    EXPECT_EQ(run(words), 0) << err();
    EXPECT_THAT(out(), StartsWith((results() / expected).string() + "\n"));
  }
  std::filesystem::create_symlink(path("a-page-1.png"), path("cover.png"));
  EXPECT_EQ(run({"action", "pdf_png", path("a.pdf")}), 0);
  EXPECT_EQ(run({"action", "image_jpeg", path("cover.png"), "--out", results().string()}), 0);
  EXPECT_EQ(out(), (results() / "cover.jpg\n").string());
}

TEST_F(ProgramTest, ListsOffers) {
  EXPECT_EQ(run({"offers", path("a.pdf")}), 0);
  EXPECT_THAT(out(), AllOf(HasSubstr("Pdf → DOCX · offline"), HasSubstr("Organize pages")));
  EXPECT_EQ(run({"offers", path("a.pdf"), path("missing")}), 1);
  EXPECT_THAT(err(), StartsWith("1 file(s) unavailable. "));
}

TEST_F(ProgramTest, InterruptCancelsAndCleansUp) {
  const pid_t process = startLongJob();
  ::kill(process, SIGINT);
  EXPECT_EQ(finish(process), 130);
  EXPECT_EQ(err(), "Cancelled. Your source files are unchanged.\n");
  EXPECT_THAT(resultNames(), IsEmpty());
}

TEST_F(ProgramTest, KilledOutrightLeavesOnlyTheHiddenWorkspaceForTheNextJobToRemove) {
  const pid_t process = startLongJob();
  ::kill(process, SIGKILL);
  EXPECT_EQ(finish(process), -SIGKILL);
  ASSERT_THAT(resultNames(), ElementsAre(StartsWith(".tolvane-")));
  // A workspace that has just been made is left alone, whoever made it.
  std::filesystem::last_write_time(
      results() / resultNames().front(),
      std::filesystem::file_time_type::clock::now() - std::chrono::minutes(2));
  EXPECT_EQ(run({"action", "rotate_pdf", path("a.pdf"), "--out", results().string()}), 0);
  EXPECT_THAT(resultNames(), ElementsAre("a-rotated.pdf"));
}

TEST_F(ProgramTest, InterruptsThatTheCallerIgnoresAreIgnored) {
  const auto previous = std::signal(SIGHUP, SIG_IGN);  // inherited, as nohup does it
  const pid_t process = startLongJob();
  std::signal(SIGHUP, previous);
  ::kill(process, SIGHUP);
  EXPECT_EQ(finish(process), 0) << err();
}

TEST_F(ProgramTest, LostResultsAreAFailure) {
  out_ = "/dev/full";
  EXPECT_EQ(run({"action", "rotate_pdf", path("a.pdf"), "--out", results().string()}), 1);
  EXPECT_EQ(err(), "The results could not be written to standard output.\n");
}

// The painting library prints "BAD status" for a group that is painted after such a dash.
TEST_F(ProgramTest, StandardOutputHasNothingOfWhatLibrariesPrint) {
  support::PdfBuilder()
      .page(
          {.drawing = "[-1 1] 0 d 0 0 m 50 50 l S /A gs /X Do",
           .entries = "/Resources << /ExtGState << /A << /ca 0.5 >> >> /XObject << /X 6 0 R >> >>"})
      .object(
          "<< /Type /XObject /Subtype /Form /BBox [0 0 99 99] /Group << /S /Transparency >> "
          "/Length 12 >>\nstream\n0 0 9 9 re f\nendstream")
      .write(path("dash.pdf"));
  static_cast<void>(run({"action", "pdf_png", path("dash.pdf"), "--out", results().string()}));
  EXPECT_EQ(out(),
            resultNames().empty() ? "" : (results() / resultNames().front()).string() + "\n");
  EXPECT_NE(out() + err(), "");
}

TEST_F(ProgramTest, HostEndsWithItsInput) {
  EXPECT_EQ(run({"host"}, R"({"jsonrpc":"2.0","id":1,"method":"hide"})"), 0);
  EXPECT_EQ(out(), "{\"id\":1,\"jsonrpc\":\"2.0\",\"result\":null}\n");
  const std::string command = TOLVANE_PROGRAM " host <&-";
  EXPECT_EQ(std::system(command.c_str()), 0);
}

TEST_F(ProgramTest, HostSpeaksJsonRpcUntilTheEndOfInput) {
  const std::string input =
      R"({"jsonrpc":"2.0","id":1,"method":"ready"})"
      "\n"
      R"({"jsonrpc":"2.0","id":2,"method":"host.select","params":{"paths":[")" +
      path("a.pdf") + "\"]}}\n";
  EXPECT_EQ(run({"host"}, input), 0);
  EXPECT_THAT(out(),
              AllOf(HasSubstr(R"("id":1)"),
                    HasSubstr(R"({"id":2,"jsonrpc":"2.0","result":null})"),
                    HasSubstr(R"("detail":"2 pages · PDF")")));
}

}  // namespace
}  // namespace tolvane
