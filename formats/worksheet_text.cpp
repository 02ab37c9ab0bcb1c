#include "formats/worksheet_text.h"

#include "formats/xml_text.h"

namespace tolvane::WorksheetText {

void appendRow(std::string& text, std::size_t number, const TableRow& row) {
  text += "<row r=\"";
  text += std::to_string(number);
  text += "\">";
  for (const std::string& cell : row) {
    text += R"(<c t="inlineStr"><is><t xml:space="preserve">)";
    text += UniversalFormats::xml(cell);
    text += "</t></is></c>";
  }
  text += "</row>";
}

}  // namespace tolvane::WorksheetText
