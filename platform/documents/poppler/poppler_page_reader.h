#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/documents/page_reader.h"

namespace tolvane {

/// Page reader on poppler, painting with cairo straight into the bitmap's memory.
class PopplerPageReader : public PageReader {
 public:
  struct Handle;

  explicit PopplerPageReader(std::unique_ptr<Handle> handle);
  ~PopplerPageReader() override;
  PopplerPageReader(const PopplerPageReader&) = delete;
  PopplerPageReader& operator=(const PopplerPageReader&) = delete;

  int pageCount() override;
  void render(int page, int width, int height, Bitmap& bitmap) override;
  std::string text(int page) override;
  std::vector<PdfGlyph> glyphs(int page) override;

 private:
  std::unique_ptr<Handle> handle_;
};

class PopplerPageReaderFactory : public PageReaderFactory {
 public:
  PopplerPageReaderFactory();

  std::unique_ptr<PageReader> open(int descriptor) override;
  std::unique_ptr<PageReader> open(std::shared_ptr<const Bytes> pdf) override;
};

}  // namespace tolvane
