#include "engine/primitives/conversion_failure.h"
#include "formats/delimited_text.h"
#include "formats/worksheet_text.h"
#include "platform/text/text_encoding.h"
#include "platform/text/xml_scanner.h"
#include "tests/fuzz/reader.h"

/// Whatever a table holds, its sheet is XML with as many cells.
void read(tolvane::BytesView input) {
  using namespace tolvane;
  Table rows;
  try {
    rows = UniversalFormats::csv(TextEncoding::fromUtf8(input).value_or(""), ',');
  } catch (const ConversionFailure&) {
  }
  std::string sheet(WorksheetText::opening);
  for (const TableRow& row : rows) {
    WorksheetText::appendRow(sheet, 1, row);
  }
  sheet += WorksheetText::closing;
  XmlScanner xml(sheet);
  require(xml.nextChild("") == "worksheet" && xml.nextChild("worksheet") == "sheetData");
  for (const TableRow& row : rows) {
    require(xml.nextChild("sheetData") == "row");
    for (std::size_t cell = 0; cell < row.size(); ++cell) {
      require(xml.nextChild("row") == "c" && xml.nextChild("c") == "is" &&
              xml.nextChild("is") == "t");
      static_cast<void>(xml.text("t"));
      require(!xml.nextChild("is") && !xml.nextChild("c"));
    }
    require(!xml.nextChild("row"));
  }
  require(!xml.nextChild("sheetData"));
}
