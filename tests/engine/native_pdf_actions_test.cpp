#include <tuple>

#include <gmock/gmock.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/images/image_encoder.h"
#include "tests/support/native_job_fixture.h"

namespace tolvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;
using ::testing::StartsWith;

class PdfActionsTest : public NativeJobFixture {
 protected:
  void SetUp() override {
    makePdf("a.pdf", 3);
    makePdf("b.pdf", 2);
  }
};

TEST_F(PdfActionsTest, DrawsEveryPageOfEveryInput) {
  EXPECT_THAT(
      run("pdf_png", {"a.pdf", "b.pdf"}, {{"range", "1"}}),
      ElementsAre("a-page-1.png", "a-page-2.png", "a-page-3.png", "b-page-1.png", "b-page-2.png"));
  EXPECT_THAT(progress_, ElementsAre(Pair(1, 5), Pair(2, 5), Pair(3, 5), Pair(4, 5), Pair(5, 5)));
  const std::string png = support::contentOf(results_ / "a-page-2.png");
  const auto size = ImageEncoder::reopen(asBytes(png));
  ASSERT_TRUE(size);
  EXPECT_EQ(std::pair(size->width, size->height), std::pair(1224, 1584));
}

TEST_F(PdfActionsTest, DrawsJpegPagesInTheAskedQuality) {
  EXPECT_THAT(run("pdf_jpeg", {"b.pdf"}, {{"quality", 0.1}}),
              ElementsAre("b-page-1.jpg", "b-page-2.jpg"));
  EXPECT_THAT(run("pdf_jpeg", {"b.pdf"}, {{"quality", 1}}),
              ElementsAre("b-page-1-converted-2.jpg", "b-page-2-converted-2.jpg"));
  EXPECT_LT(std::filesystem::file_size(results_ / "b-page-1.jpg"),
            std::filesystem::file_size(results_ / "b-page-1-converted-2.jpg"));
}

TEST_F(PdfActionsTest, TurnsEveryPageAQuarterFurther) {
  makePdf("turned.pdf", 1, 270);
  makePdf("back.pdf", 1, -180);
  EXPECT_THAT(run("rotate_pdf", {"a.pdf", "turned.pdf", "back.pdf"}),
              ElementsAre("a-rotated.pdf", "turned-rotated.pdf", "back-rotated.pdf"));
  EXPECT_EQ(pagesOf("a-rotated.pdf"), "a.pdf 1 @90, a.pdf 2 @90, a.pdf 3 @90");
  EXPECT_EQ(pagesOf("turned-rotated.pdf"), "turned.pdf 1 @0");
  EXPECT_EQ(pagesOf("back-rotated.pdf"), "back.pdf 1 @-90");
}

TEST_F(PdfActionsTest, MergesInInputOrder) {
  EXPECT_THAT(run("merge_pdf", {"b.pdf", "a.pdf", "b.pdf"}), ElementsAre("b-combined.pdf"));
  EXPECT_EQ(pagesOf("b-combined.pdf"),
            "b.pdf 1 @0, b.pdf 2 @0, a.pdf 1 @0, a.pdf 2 @0, a.pdf 3 @0, b.pdf 1 @0, b.pdf 2 @0");
}

TEST_F(PdfActionsTest, SplitsInDocumentOrder) {
  EXPECT_THAT(run("split_pdf", {"a.pdf"}, {{"range", "3, 1"}}), ElementsAre("a-split.pdf"));
  EXPECT_EQ(pagesOf("a-split.pdf"), "a.pdf 1 @0, a.pdf 3 @0");
  EXPECT_THAT(progress_, ElementsAre(Pair(1, 3), Pair(2, 3), Pair(3, 3)));
}

TEST_F(PdfActionsTest, EditsOrderAndRotation) {
  EXPECT_THAT(run("edit_pdf",
                  {"a.pdf"},
                  {{"pages", Value::List{2, 0}},
                   {"rotations", Value::Map{{"2", 90.0}, {"0", -450}, {"7", 13}}},
                   {"range", "not read here"}}),
              ElementsAre("a-edited.pdf"));
  EXPECT_EQ(pagesOf("a-edited.pdf"), "a.pdf 3 @90, a.pdf 1 @-90");
  EXPECT_THAT(progress_, ElementsAre(Pair(3, 3)));
  EXPECT_THAT(run("edit_pdf", {"b.pdf"}), ElementsAre("b-edited.pdf"));
  EXPECT_EQ(pagesOf("b-edited.pdf"), "b.pdf 1 @0, b.pdf 2 @0");
}

TEST_F(PdfActionsTest, ExtractsTheTextLayer) {
  EXPECT_THAT(run("extract_text", {"b.pdf"}), ElementsAre("b-text.txt"));
  const std::string text = support::contentOf(results_ / "b-text.txt");
  EXPECT_THAT(text, StartsWith("b.pdf 1"));
  EXPECT_THAT(text, HasSubstr("\n\nb.pdf 2"));
  EXPECT_TRUE(text.ends_with("\n\n"));
}

TEST_F(PdfActionsTest, RecognizesDrawnText) {
  EXPECT_THAT(run("ocr", {"b.pdf"}), ElementsAre("b-ocr.txt"));
  EXPECT_EQ(support::contentOf(results_ / "b-ocr.txt"), "b.pdf 1\n\nb.pdf 2\n\n");
}

TEST_F(PdfActionsTest, FailsWhereThereIsNoText) {
  support::PdfBuilder builder;
  builder.page({}).write(sources_ / "blank.pdf");
  EXPECT_EQ(failureOf("extract_text", {"blank.pdf"}),
            "No selectable text was found. Try Recognize text (OCR).");
  EXPECT_EQ(failureOf("ocr", {"blank.pdf"}), "No text was recognized. Try a clearer scan.");
}

TEST_F(PdfActionsTest, LimitsThePagesOfAJob) {
  makePdf("long.pdf", 300);
  makePdf("longest.pdf", 500);
  const std::string refusal =
      "Use at most 500 pages in a merged PDF and 1,000 pages in other jobs.";
  EXPECT_EQ(failureOf("merge_pdf", {"long.pdf", "long.pdf"}), refusal);
  EXPECT_EQ(failureOf("extract_text", {"longest.pdf", "longest.pdf", "b.pdf"}), refusal);
  EXPECT_THAT(run("rotate_pdf", {"long.pdf", "long.pdf"}),
              ElementsAre("long-rotated.pdf", "long-rotated-converted-2.pdf"));
}

constexpr const char* badRange = "Use page ranges such as 1-3, 5 within this document.";
constexpr const char* badPages = "Keep at least one page and use each page only once.";

const std::tuple<std::string, std::string, Value::Map, const char*> pdfRefusalCases[] = {
    {"range of pictures", "pdf_png", {{"range", "4"}}, badRange},
    {"range of a merge", "merge_pdf", {{"range", "1,,2"}}, badRange},
    {"range of text", "extract_text", {{"range", "x"}}, badRange},
    {"repeated page", "edit_pdf", {{"pages", Value::List{0, 0}}}, badPages},
    {"no page", "edit_pdf", {{"pages", Value::List{}}}, badPages},
    {"page past the end", "edit_pdf", {{"pages", Value::List{3}}}, badPages},
    {"negative page", "edit_pdf", {{"pages", Value::List{-1}}}, badPages},
    {"eighth turn",
     "edit_pdf",
     {{"rotations", Value::Map{{"1", 45}}}},
     "Use quarter-turn page rotations."},
    {"unknown action", "pdf_gif", {}, "This action is unavailable."},
    {"image action", "resize", {}, "All selected files must be images for this action."},
};

TEST_F(PdfActionsTest, LeavesTheDestinationAsItWas) {
  for (const auto& [label, action, options, expected] : pdfRefusalCases) {
    SCOPED_TRACE(::testing::Message() << action << ": " << label);
    makePdf("a.pdf", 3);
    EXPECT_EQ(failureOf(action, {"a.pdf"}, options), expected);
    EXPECT_TRUE(results_.names().empty());
  }
}

const std::tuple<std::string, std::string, Value::Map> unreadablePageCases[] = {
    {"any", "pdf_png", {}},
    {"any", "pdf_jpeg", {}},
    {"any", "rotate_pdf", {}},
    {"any", "merge_pdf", {}},
    {"selected", "split_pdf", {}},
    {"not selected", "split_pdf", {{"range", "1, 3"}}},
    {"listed", "edit_pdf", {{"pages", Value::List{2, 1}}}},
    {"before its eighth turn", "edit_pdf", {{"rotations", Value::Map{{"1", 45}}}}},
    {"any", "extract_text", {}},
    {"any", "ocr", {}},
};

TEST_F(PdfActionsTest, EndsTheJob) {
  for (const auto& [label, action, options] : unreadablePageCases) {
    SCOPED_TRACE(::testing::Message() << action << ": " << label);
    support::PdfBuilder()
        .page({.text = "One"})
        .page({.object = "null"})
        .page({.text = "Three"})
        .write(sources_ / "a.pdf");
    EXPECT_EQ(failureOf(action, {"a.pdf"}, options), "Cannot read this page.");
    EXPECT_TRUE(results_.names().empty());
  }
}

TEST_F(PdfActionsTest, EditsAroundAnUnreadablePage) {
  support::PdfBuilder()
      .page({.text = "One"})
      .page({.object = "null"})
      .page({.text = "Three"})
      .write(sources_ / "damaged.pdf");
  EXPECT_THAT(run("edit_pdf", {"damaged.pdf"}, {{"pages", Value::List{2, 0}}}),
              ElementsAre("damaged-edited.pdf"));
  EXPECT_EQ(pagesOf("damaged-edited.pdf"), "Three @0, One @0");
}

}  // namespace
}  // namespace tolvane
