#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

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

BytesView viewOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

struct GeometryCase {
  const char* label;
  PdfPage page;
  const char* inherited;
  double width;
  double height;
  int rotation;
};

void PrintTo(const GeometryCase& c, std::ostream* out) {
  *out << c.label;
}

class GeometryTest : public ::testing::TestWithParam<GeometryCase> {};

TEST_P(GeometryTest, StatesTheMediaBoxAndTheRotation) {
  const TemporaryFolder folder;
  const fs::path file =
      PdfBuilder().page(GetParam().page).inherited(GetParam().inherited).write(folder / "page.pdf");
  const PdfPageGeometry geometry = pdfLibrary().open(file)->geometry(0);
  EXPECT_DOUBLE_EQ(geometry.width, GetParam().width);
  EXPECT_DOUBLE_EQ(geometry.height, GetParam().height);
  EXPECT_EQ(geometry.rotation, GetParam().rotation);
}

const std::string hugeNumber = std::string(400, '9') + ".0";

INSTANTIATE_TEST_SUITE_P(
    Pages,
    GeometryTest,
    ::testing::Values(
        GeometryCase{"own box", {.width = 595.5, .height = 842}, "", 595.5, 842, 0},
        GeometryCase{"corners exchanged", {.mediaBox = "[300 400 100 50]"}, "", 200, 350, 0},
        GeometryCase{"inherited box", {.mediaBox = ""}, "/MediaBox [0 0 20 30]", 20, 30, 0},
        GeometryCase{"crop box ignored", {.entries = "/CropBox [9 9 20 20]"}, "", 612, 792, 0},
        GeometryCase{"user unit ignored", {.entries = "/UserUnit 10"}, "", 612, 792, 0},
        GeometryCase{"missing box", {.mediaBox = ""}, "", 0, 0, 0},
        GeometryCase{"empty box", {.mediaBox = "[5 5 5 90]"}, "", 0, 0, 0},
        GeometryCase{"short box", {.mediaBox = "[0 0 612]"}, "", 0, 0, 0},
        GeometryCase{"words in the box", {.mediaBox = "[0 0 /Wide (high)]"}, "", 0, 0, 0},
        GeometryCase{"infinite", {.mediaBox = "[0 0 " + hugeNumber + " 9]"}, "", 0, 0, 0},
        GeometryCase{"own rotation", {.rotation = 180}, "/Rotate 90", 612, 792, 180},
        GeometryCase{"inherited rotation", {}, "/Rotate 270", 612, 792, 270},
        GeometryCase{"negative rotation", {.rotation = -90}, "", 612, 792, -90},
        GeometryCase{"more than a turn", {.rotation = 450}, "", 612, 792, 450},
        GeometryCase{"rotation no number", {.entries = "/Rotate /Left"}, "", 612, 792, 0}));

TEST(PdfLibraryTest, CountsPages) {
  const TemporaryFolder folder;
  const PdfBuilder three = PdfBuilder().page({}).page({}).page({});
  EXPECT_EQ(pdfLibrary().open(three.write(folder / "three.pdf"))->pageCount(), 3);
  EXPECT_EQ(pdfLibrary().countPages(viewOf(three.bytes())), 3);
  EXPECT_EQ(pdfLibrary().open(PdfBuilder().write(folder / "none.pdf"))->pageCount(), 0);
}

TEST(PdfLibraryTest, OpensWhatOnlyAnOwnerPasswordProtects) {
  const TemporaryFolder folder;
  const auto document = pdfLibrary().open(
      PdfBuilder().page({.text = "Open"}).writeRestricted(folder / "owner.pdf", "secret"));
  EXPECT_EQ(document->geometry(0).width, 612);
  EXPECT_THAT(document->text(0), ::testing::StartsWith("Open"));
}

struct RefusalCase {
  const char* label;
  std::function<fs::path(const TemporaryFolder&)> make;
  std::optional<PdfOpenError::Reason> reason;  // absent: the system's refusal
};

void PrintTo(const RefusalCase& c, std::ostream* out) {
  *out << c.label;
}

class OpenRefusalTest : public ::testing::TestWithParam<RefusalCase> {};

TEST_P(OpenRefusalTest, SaysWhy) {
  const TemporaryFolder folder;
  const fs::path file = GetParam().make(folder);
  ::testing::internal::CaptureStderr();
  std::optional<PdfOpenError::Reason> reason;
  try {
    static_cast<void>(pdfLibrary().open(file));
    ADD_FAILURE() << "opened";
  } catch (const PdfOpenError& error) {
    reason = error.reason();
  } catch (const PlatformError& error) {
    EXPECT_THAT(error.what(), ::testing::HasSubstr(file.string()));
  }
  EXPECT_EQ(reason, GetParam().reason);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

std::string cutInHalf(const std::string& text) {
  return text.substr(0, text.size() / 2);
}

INSTANTIATE_TEST_SUITE_P(
    Files,
    OpenRefusalTest,
    ::testing::Values(
        RefusalCase{"locked",
                    [](const TemporaryFolder& folder) {
                      return PdfBuilder().page({}).writeLocked(folder / "a.pdf", "secret");
                    },
                    PdfOpenError::Reason::locked},
        RefusalCase{"garbage",
                    [](const TemporaryFolder& folder) {
                      return folder.write("a.pdf", "%PDF-1.4\nnothing of the kind");
                    },
                    PdfOpenError::Reason::damaged},
        RefusalCase{"empty",
                    [](const TemporaryFolder& folder) { return folder.write("a.pdf", ""); },
                    PdfOpenError::Reason::damaged},
        RefusalCase{"truncated",
                    [](const TemporaryFolder& folder) {
                      return folder.write("a.pdf", cutInHalf(PdfBuilder().page({}).bytes()));
                    },
                    PdfOpenError::Reason::damaged},
        RefusalCase{"missing",
                    [](const TemporaryFolder& folder) { return folder / "a.pdf"; },
                    std::nullopt},
        RefusalCase{
            "folder", [](const TemporaryFolder& folder) { return folder.path(); }, std::nullopt}));

TEST(PdfLibraryTest, RefusesToCountPagesOfGarbage) {
  const std::string whole = PdfBuilder().page({}).bytes();
  for (const std::string& bytes : {std::string(), std::string("garbage"), cutInHalf(whole)}) {
    EXPECT_THROW(static_cast<void>(pdfLibrary().countPages(viewOf(bytes))), PdfOpenError) << bytes;
  }
}

class UnreadablePageTest : public ::testing::TestWithParam<const char*> {};

TEST_P(UnreadablePageTest, IsRefusedAndTheOthersAreRead) {
  const TemporaryFolder folder;
  const PdfBuilder builder =
      PdfBuilder().page({.text = "One"}).page({.object = GetParam()}).page({.text = "Three"});
  EXPECT_THROW(static_cast<void>(pdfLibrary().countPages(viewOf(builder.bytes()))), PdfOpenError);

  const auto document = pdfLibrary().open(builder.write(folder / "a.pdf"));
  const auto composer = pdfLibrary().compose();
  Bitmap bitmap;
  EXPECT_EQ(document->pageCount(), 3);
  EXPECT_THROW(static_cast<void>(document->geometry(1)), PlatformError);
  EXPECT_THROW(document->render(1, 10, 10, bitmap), PlatformError);
  EXPECT_THROW(static_cast<void>(document->text(1)), PlatformError);
  EXPECT_THROW(composer->append(document, 1, std::nullopt), PlatformError);
  EXPECT_EQ(document->text(0), "One");
  EXPECT_EQ(document->text(2), "Three");
  composer->append(document, 2, std::nullopt);
  EXPECT_EQ(pdfLibrary().countPages(composer->serialise()), 1);
}

INSTANTIATE_TEST_SUITE_P(Objects,
                         UnreadablePageTest,
                         ::testing::Values("null", "(( /Type /Page >>", "[1 2]", "7"));

class WrongCountTest : public ::testing::TestWithParam<std::size_t> {};

TEST_P(WrongCountTest, DoesNotHideAPage) {
  const TemporaryFolder folder;
  const auto document = pdfLibrary().open(PdfBuilder()
                                              .page({.text = "One"})
                                              .page({.text = "Two"})
                                              .page({.text = "Three"})
                                              .wrongCount(GetParam())
                                              .write(folder / "a.pdf"));
  ASSERT_EQ(document->pageCount(), 3);
  Bitmap bitmap;
  document->render(2, 10, 10, bitmap);
  EXPECT_EQ(document->text(2), "Three");
  EXPECT_EQ(document->text(0), "One");
}

INSTANTIATE_TEST_SUITE_P(Counts, WrongCountTest, ::testing::Values(0, 1, 2, 4, 900));

TEST(PdfLibraryTest, SaysThatTheFileChanged) {
  const TemporaryFolder folder;
  const fs::path file = PdfBuilder().page({}).write(folder / "a.pdf");
  const auto document = pdfLibrary().open(file);
  fs::resize_file(file, 100);
  EXPECT_EQ(support::failureText([&] { return document->geometry(0); }),
            "Could not read " + file.string() + ": the file changed after it was opened.");
}

struct ChangeCase {
  const char* label;
  std::function<void(const fs::path&)> change;
};

void PrintTo(const ChangeCase& c, std::ostream* out) {
  *out << c.label;
}

class ChangedFileTest : public ::testing::TestWithParam<ChangeCase> {};

TEST_P(ChangedFileTest, FailsFromTheNextCall) {
  const TemporaryFolder folder;
  const PdfBuilder builder = PdfBuilder().page({.text = "One"}).page({.text = "Two"});
  const fs::path file = builder.write(folder / "a.pdf");
  const auto document = pdfLibrary().open(file);
  const auto composer = pdfLibrary().compose();
  composer->append(document, 0, std::nullopt);

  GetParam().change(file);

  Bitmap bitmap;
  EXPECT_THROW(static_cast<void>(document->geometry(1)), PlatformError);
  EXPECT_THROW(document->render(0, 10, 10, bitmap), PlatformError);
  EXPECT_THROW(static_cast<void>(document->text(0)), PlatformError);
  EXPECT_THROW(composer->append(document, 1, std::nullopt), PlatformError);
  EXPECT_THROW(static_cast<void>(composer->serialise()), PlatformError);
}

INSTANTIATE_TEST_SUITE_P(
    Changes,
    ChangedFileTest,
    ::testing::Values(ChangeCase{"truncated",
                                 [](const fs::path& file) { fs::resize_file(file, 100); }},
                      ChangeCase{"emptied", [](const fs::path& file) { fs::resize_file(file, 0); }},
                      ChangeCase{"removed", [](const fs::path& file) { fs::remove(file); }},
                      ChangeCase{"replaced",
                                 [](const fs::path& file) {
                                   const fs::path other = file.parent_path() / "b.pdf";
                                   fs::copy_file(file, other);
                                   fs::rename(other, file);
                                 }},
                      ChangeCase{"written", [](const fs::path& file) {
                                   fs::last_write_time(
                                       file,
                                       fs::file_time_type::clock::now() + std::chrono::seconds(5));
                                 }}));

}  // namespace

}  // namespace tolvane
