#include "universal/documents/pdf_table.h"

#include "universal/documents/table_builder.h"

namespace tolvane::UniversalEngine {

Table pdfTable(const std::filesystem::path& url, const JobContext& context) {
  const auto document = context.base.pdf(url);
  TableBuilder builder;
  for (int page = 0; page < document->pageCount(); ++page) {
    context.token.check();
    builder.addPage(document->glyphs(page));
  }
  return builder.table();
}

}  // namespace tolvane::UniversalEngine
