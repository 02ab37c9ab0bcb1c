#pragma once

#include <map>

#include "platform/text/code_page.h"

namespace tolvane {

/// The code pages of an RTF document: its own, and those of the fonts in its font table.
class RichTextFonts {
 public:
  /// Stands for the document's default font.
  static constexpr int noFont = -1;

  void setDocumentCodePage(int codePage) { documentCodePage_ = codePage; }
  void setDefaultFont(int font) { defaultFont_ = font; }

  /// Starts the table's entry of `font`, which the next two calls fill.
  void define(int font) { definedFont_ = font; }
  void setCharset(int charset);
  void setCodePage(int codePage);

  /// In which code page bytes of text in `font` are meant.
  [[nodiscard]] int codePageOf(int font) const;

 private:
  int documentCodePage_ = CodePage::windowsLatin;
  int defaultFont_ = noFont;
  int definedFont_ = noFont;
  std::map<int, int> codePages_;  // by font; only of fonts that name one
};

}  // namespace tolvane
