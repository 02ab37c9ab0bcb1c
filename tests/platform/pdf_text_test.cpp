#include <cstdint>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "platform/files/file_system.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {

namespace {

using support::PdfBuilder;
using support::TemporaryFolder;

/// A page that rsvg-convert and cairo made. @param shapes SVG in a page of 600 x 800
std::string textOfDrawing(const std::string& shapes) {
  const TemporaryFolder folder;
  FileSystem::writeAtomically(
      folder / "page.svg",
      BytesView(reinterpret_cast<const std::uint8_t*>(shapes.data()), shapes.size()));
  const std::string command = "rsvg-convert -f pdf -o '" + (folder / "page.pdf").string() + "' '" +
                              (folder / "page.svg").string() + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);  // NOLINT(concurrency-mt-unsafe)
  return pdfLibrary().open(folder / "page.pdf")->text(0);
}

std::string cell(int x, int y, const std::string& text) {
  return "<text x='" + std::to_string(x) + "' y='" + std::to_string(y) + "'>" + text + "</text>";
}

std::string page(const std::string& shapes) {
  return "<svg xmlns='http://www.w3.org/2000/svg' width='600' height='800' font-size='12' "
         "font-family='DejaVu Sans'>" +
         shapes + "</svg>";
}

std::string columns(const std::string& first, const std::string& second) {
  std::string all;
  for (int line = 0; line < 8; ++line) {
    all += cell(30, 100 + 15 * line, first) + cell(310, 100 + 15 * line, second);
  }
  return all;
}

std::string repeated(const std::string& line, int count) {
  std::string all;
  for (int index = 0; index < count; ++index) {
    all += (index > 0 ? "\n" : "") + line;
  }
  return all;
}

const struct {
  const char* label;
  std::string shapes;
  std::string expected;
} layouts[] = {
    {"cells of a row",
     cell(30, 100, "Item") + cell(250, 100, "Qty") + cell(400, 100, "Price"),
     "Item\tQty\tPrice"},
    {"a table, column after column",
     cell(30, 100, "Pears") + cell(30, 120, "Apples and plums") + cell(250, 100, "10") +
         cell(250, 120, "3") + cell(400, 100, "12.50") + cell(400, 120, "1 234.00"),
     "Pears\t10\t12.50\nApples and plums\t3\t1 234.00"},
    {"prose in two columns",
     columns("The first column is read to its end", "before the second one begins, as it is."),
     repeated("The first column is read to its end", 8) + "\n" +
         repeated("before the second one begins, as it is.", 8)},
    {"words without a written space", cell(30, 100, "left") + cell(60, 100, "right"), "left right"},
    {"raised and lowered",
     "<text x='30' y='100'>H<tspan dy='3' font-size='8'>2</tspan><tspan dy='-3'>O</tspan></text>",
     "H2O"},
    {"a word that runs upwards",
     "<text transform='rotate(-90 100 300)' x='100' y='300'>Rotated margin</text>",
     "Rotated margin"},
    {"Hebrew, cell by cell",
     cell(30, 100, "12.50") + cell(250, 100, "אגסים טריים") + cell(30, 120, "7.10") +
         cell(250, 120, "שזיפים"),
     "אגסים טריים\t12.50\nשזיפים\t7.10"},
};

TEST(PdfTextTest, PartsWhatStandsApart) {
  for (const auto& [label, shapes, expected] : layouts) {
    SCOPED_TRACE(label);
    EXPECT_EQ(textOfDrawing(page(shapes)), expected);
  }
}

TEST(PdfTextTest, HasTheTextOfAnnotationsAndFields) {
  const TemporaryFolder folder;
  const auto document = pdfLibrary().open(
      PdfBuilder()
          .page({.text = "Form",
                 .entries = "/Annots [<< /Type /Annot /Subtype /FreeText /Rect [50 500 300 540] "
                            "/F 4 /Contents (Remark) /DA (/Helv 12 Tf 0 g) >>]"})
          .write(folder / "remark.pdf"));
  EXPECT_EQ(document->text(0), "Form\nRemark");
}

}  // namespace

}  // namespace tolvane
