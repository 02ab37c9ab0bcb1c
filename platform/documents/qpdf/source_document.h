#pragma once

#include <future>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/documents/page_reader.h"
#include "platform/documents/pdf_document.h"
#include "platform/documents/qpdf/source_file.h"
#include "platform/documents/qpdf/text_ahead.h"

class QPDF;
class QPDFObjectHandle;

namespace tolvane {

/// An open file. The page reader is made when a page is first rendered or read.
class SourceDocument : public PdfDocument {
 public:
  SourceDocument(std::shared_ptr<SourceFile> file, std::shared_ptr<QPDF> document);
  ~SourceDocument() override;
  SourceDocument(const SourceDocument&) = delete;
  SourceDocument& operator=(const SourceDocument&) = delete;

  int pageCount() const override;
  PdfPageGeometry geometry(int page) override;
  void render(int page, int width, int height, Bitmap& bitmap) override;
  std::string text(int page) override;
  std::map<std::string, std::string> attributes() override;
  std::vector<PdfGlyph> glyphs(int page) override;

  /// The page's object with the entries that it inherits; to be copied, not changed.
  [[nodiscard]] QPDFObjectHandle completePage(int page);
  [[nodiscard]] std::string version() const;
  void checkUnchanged() const { file_->checkUnchanged(); }

 private:
  [[nodiscard]] const QPDFObjectHandle& pageAt(int page) const;
  [[nodiscard]] PageReader& reader();
  void readFrom(Bytes copy);
  /// Pages are read from the file itself while another thread makes the copy.
  void readFromCopyOnceMade();
  /// @return false when the page is no scan, or not one that covers so many pixels.
  [[nodiscard]] bool renderScan(int page, int width, int height, Bitmap& bitmap);
  [[nodiscard]] std::optional<std::string> textReadAhead(int page);
  [[nodiscard]] bool needsCopy() const;
  [[nodiscard]] bool deservesCopy() const;

  std::shared_ptr<SourceFile> file_;
  std::shared_ptr<QPDF> document_;
  std::vector<QPDFObjectHandle> pages_;
  std::unique_ptr<PageReader> reader_;
  std::shared_ptr<const Bytes> copy_;  // what the reader reads instead of the file
  std::unique_ptr<TextAhead> ahead_;
  int pagesRead_ = 0;
  std::future<Bytes> copying_;  // last, because its end waits for the thread
};

}  // namespace tolvane
