#include "catalog/labels.h"

#include <array>

#include "catalog/text_tables.h"
#include "platform/files/file_names.h"

namespace tolvane::Labels {

std::optional<std::string> title(std::string_view id) {
  constexpr std::array<TextTables::Row, 14> labels = {{
      {"jpg", "JPEG"},
      {"docx", "Word"},
      {"pptx", "PowerPoint"},
      {"xlsx", "Excel"},
      {"md", "Markdown"},
      {"txt", "Plain text"},
      {"gz", "GZIP"},
      {"pdf", "PDF"},
      {"background", "Add background"},
      {"organize", "Organize pages"},
      {"collage", "Collage"},
      {"create_pdf", "Create PDF"},
      {"merge", "Merge PDFs"},
      {"join", "Join videos"},
  }};
  return TextTables::entry(labels, id);
}

std::string capitalized(std::string_view word) {
  return FileNames::upper(word.substr(0, 1)).append(word.substr(1));
}

}  // namespace tolvane::Labels
