#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/documents/pdf_glyph.h"
#include "platform/files/bytes.h"
#include "platform/images/bitmap.h"

namespace tolvane {

/// Paints the pages of one PDF and reads their text. What PdfDocument renders with; it is a module
/// of its own because its libraries take three times as long to load as the one that opens and
/// writes PDFs. Worker thread; two readers may work at the same time on two threads.
class PageReader {
 public:
  PageReader() = default;
  virtual ~PageReader() = default;
  PageReader(const PageReader&) = delete;
  PageReader& operator=(const PageReader&) = delete;

  /// As the file states it, which may be wrong.
  [[nodiscard]] virtual int pageCount() = 0;
  /// As PdfDocument::render, but paints the crop box of a page that has one.
  virtual void render(int page, int width, int height, Bitmap& bitmap) = 0;
  /// As PdfDocument::text.
  [[nodiscard]] virtual std::string text(int page) = 0;
  /// As PdfDocument::glyphs.
  [[nodiscard]] virtual std::vector<PdfGlyph> glyphs(int page) = 0;
};

class PageReaderFactory {
 public:
  PageReaderFactory() = default;
  virtual ~PageReaderFactory() = default;
  PageReaderFactory(const PageReaderFactory&) = delete;
  PageReaderFactory& operator=(const PageReaderFactory&) = delete;

  /// Reads on demand. @param descriptor stays the caller's, who may close it after the call.
  /// @throws PlatformError when the file is no PDF; so does the other.
  [[nodiscard]] virtual std::unique_ptr<PageReader> open(int descriptor) = 0;
  [[nodiscard]] virtual std::unique_ptr<PageReader> open(std::shared_ptr<const Bytes> pdf) = 0;
};

/// Loads the rendering libraries at its first use. One object for the process.
[[nodiscard]] PageReaderFactory& pageReaderFactory();

}  // namespace tolvane
