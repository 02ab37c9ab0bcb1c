#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "tests/support/failure_text.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using support::PdfBuilder;
using support::PdfPage;
using support::TemporaryFolder;

const std::string hugeNumber = std::string(400, '9') + ".0";

const std::tuple<const char*, PdfPage, const char*, double, double, int> geometryCases[] = {
    {"own box", {.width = 595.5, .height = 842}, "", 595.5, 842, 0},
    {"corners exchanged", {.mediaBox = "[300 400 100 50]"}, "", 200, 350, 0},
    {"inherited box", {.mediaBox = ""}, "/MediaBox [0 0 20 30]", 20, 30, 0},
    {"crop box ignored", {.entries = "/CropBox [9 9 20 20]"}, "", 612, 792, 0},
    {"user unit ignored", {.entries = "/UserUnit 10"}, "", 612, 792, 0},
    {"missing box", {.mediaBox = ""}, "", 612, 792, 0},
    {"empty box", {.mediaBox = "[5 5 5 90]"}, "", 0, 0, 0},
    {"short box", {.mediaBox = "[0 0 612]"}, "", 0, 0, 0},
    {"words in the box", {.mediaBox = "[0 0 /Wide (high)]"}, "", 0, 0, 0},
    {"infinite", {.mediaBox = "[0 0 " + hugeNumber + " 9]"}, "", 0, 0, 0},
    {"own rotation", {.rotation = 180}, "/Rotate 90", 612, 792, 180},
    {"inherited rotation", {}, "/Rotate 270", 612, 792, 270},
    {"negative rotation", {.rotation = -90}, "", 612, 792, -90},
    {"more than a turn", {.rotation = 450}, "", 612, 792, 450},
    {"rotation no number", {.entries = "/Rotate /Left"}, "", 612, 792, 0},
};

TEST(GeometryTest, StatesTheMediaBoxAndTheRotation) {
  for (const auto& [label, page, inherited, width, height, rotation] : geometryCases) {
    SCOPED_TRACE(label);
    const TemporaryFolder folder;
    const fs::path file = PdfBuilder().page(page).inherited(inherited).write(folder / "page.pdf");
    const PdfPageGeometry geometry = pdfLibrary().open(file)->geometry(0);
    EXPECT_DOUBLE_EQ(geometry.width, width);
    EXPECT_DOUBLE_EQ(geometry.height, height);
    EXPECT_EQ(geometry.rotation, rotation);
  }
}

TEST(PdfLibraryTest, CountsPages) {
  const TemporaryFolder folder;
  const PdfBuilder three = PdfBuilder().page({}).page({}).page({});
  EXPECT_EQ(pdfLibrary().open(three.write(folder / "three.pdf"))->pageCount(), 3);
  EXPECT_EQ(pdfLibrary().countPages(asBytes(three.bytes())), 3);
  EXPECT_EQ(pdfLibrary().open(PdfBuilder().write(folder / "none.pdf"))->pageCount(), 0);
}

TEST(PdfLibraryTest, OpensWhatOnlyAnOwnerPasswordProtects) {
  const TemporaryFolder folder;
  const auto document = pdfLibrary().open(
      PdfBuilder().page({.text = "Open"}).writeRestricted(folder / "owner.pdf", "secret"));
  EXPECT_EQ(document->geometry(0).width, 612);
  EXPECT_THAT(document->text(0), ::testing::StartsWith("Open"));
}

std::string cutInHalf(const std::string& text) {
  return text.substr(0, text.size() / 2);
}

TEST(OpenRefusalTest, SaysWhy) {
  constexpr auto damaged = PdfOpenError::Reason::damaged;
  const TemporaryFolder folder;
  // Without a reason: the system's refusal.
  const std::pair<fs::path, std::optional<PdfOpenError::Reason>> cases[] = {
      {PdfBuilder().page({}).writeLocked(folder / "locked.pdf", "secret"),
       PdfOpenError::Reason::locked},
      {folder.write("garbage.pdf", "%PDF-1.4\nnothing of the kind"), damaged},
      {folder.write("empty.pdf", ""), damaged},
      {folder.write("cut.pdf", cutInHalf(PdfBuilder().page({}).bytes())), damaged},
      {folder / "missing.pdf", std::nullopt},
      {folder.path(), std::nullopt}};
  for (const auto& [file, expected] : cases) {
    SCOPED_TRACE(file);
    ::testing::internal::CaptureStderr();
    std::optional<PdfOpenError::Reason> reason;
    try {
      (void)pdfLibrary().open(file);
      ADD_FAILURE() << "opened";
    } catch (const PdfOpenError& error) {
      reason = error.reason();
    } catch (const PlatformError& error) {
      EXPECT_THAT(error.what(), ::testing::HasSubstr(file.string()));
    }
    EXPECT_EQ(reason, expected);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
  }
}

TEST(PdfLibraryTest, RefusesToCountPagesOfGarbage) {
  const std::string whole = PdfBuilder().page({}).bytes();
  for (const std::string& bytes : {std::string(), std::string("garbage"), cutInHalf(whole)}) {
    EXPECT_THROW((void)pdfLibrary().countPages(asBytes(bytes)), PdfOpenError) << bytes;
  }
}

TEST(UnreadablePageTest, IsRefusedAndTheOthersAreRead) {
  for (const char* value : {"null", "(( /Type /Page >>", "[1 2]", "7"}) {
    SCOPED_TRACE(value);
    const TemporaryFolder folder;
    const PdfBuilder builder =
        PdfBuilder().page({.text = "One"}).page({.object = value}).page({.text = "Three"});
    EXPECT_THROW((void)pdfLibrary().countPages(asBytes(builder.bytes())), PdfOpenError);

    const auto document = pdfLibrary().open(builder.write(folder / "a.pdf"));
    const auto composer = pdfLibrary().compose();
    Bitmap bitmap;
    EXPECT_EQ(document->pageCount(), 3);
    EXPECT_THROW((void)document->geometry(1), PlatformError);
    EXPECT_THROW(document->render(1, 10, 10, bitmap), PlatformError);
    EXPECT_THROW((void)document->text(1), PlatformError);
    EXPECT_THROW(composer->append(document, 1, std::nullopt), PlatformError);
    EXPECT_EQ(document->text(0), "One");
    EXPECT_EQ(document->text(2), "Three");
    composer->append(document, 2, std::nullopt);
    EXPECT_EQ(pdfLibrary().countPages(composer->serialise()), 1);
  }
}

TEST(WrongCountTest, DoesNotHideAPage) {
  for (const std::size_t value : {0U, 1U, 2U, 4U, 900U}) {
    SCOPED_TRACE(value);
    const TemporaryFolder folder;
    const auto document = pdfLibrary().open(PdfBuilder()
                                                .page({.text = "One"})
                                                .page({.text = "Two"})
                                                .page({.text = "Three"})
                                                .wrongCount(value)
                                                .write(folder / "a.pdf"));
    ASSERT_EQ(document->pageCount(), 3);
    Bitmap bitmap;
    document->render(2, 10, 10, bitmap);
    EXPECT_EQ(document->text(2), "Three");
    EXPECT_EQ(document->text(0), "One");
  }
}

TEST(PdfLibraryTest, SaysThatTheFileChanged) {
  const TemporaryFolder folder;
  const fs::path file = PdfBuilder().page({}).write(folder / "a.pdf");
  const auto document = pdfLibrary().open(file);
  fs::resize_file(file, 100);
  EXPECT_EQ(support::failureText([&] { return document->geometry(0); }),
            "Could not read " + file.string() + ": the file changed after it was opened.");
}

const std::tuple<const char*, std::function<void(const fs::path&)>> changedFileCases[] = {
    {"truncated", [](const fs::path& file) { fs::resize_file(file, 100); }},
    {"emptied", [](const fs::path& file) { fs::resize_file(file, 0); }},
    {"removed", [](const fs::path& file) { fs::remove(file); }},
    {"replaced",
     [](const fs::path& file) {
       const fs::path other = file.parent_path() / "b.pdf";
       fs::copy_file(file, other);
       fs::rename(other, file);
     }},
    {"written",
     [](const fs::path& file) {
       fs::last_write_time(file, fs::file_time_type::clock::now() + std::chrono::seconds(5));
     }},
};

TEST(ChangedFileTest, FailsFromTheNextCall) {
  for (const auto& [label, change] : changedFileCases) {
    SCOPED_TRACE(label);
    const TemporaryFolder folder;
    const PdfBuilder builder = PdfBuilder().page({.text = "One"}).page({.text = "Two"});
    const fs::path file = builder.write(folder / "a.pdf");
    const auto document = pdfLibrary().open(file);
    const auto composer = pdfLibrary().compose();
    composer->append(document, 0, std::nullopt);

    change(file);

    Bitmap bitmap;
    EXPECT_THROW((void)document->geometry(1), PlatformError);
    EXPECT_THROW(document->render(0, 10, 10, bitmap), PlatformError);
    EXPECT_THROW((void)document->text(0), PlatformError);
    EXPECT_THROW(composer->append(document, 1, std::nullopt), PlatformError);
    EXPECT_THROW((void)composer->serialise(), PlatformError);
  }
}

}  // namespace

}  // namespace tolvane
