#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/documents/pdf_document.h"
#include "platform/documents/qpdf/page_links.h"
#include "platform/documents/qpdf/source_document.h"

class QPDF;
class QPDFObjectHandle;

namespace tolvane {

/// Collects pages in a new document of libqpdf's. Page content is copied out of the sources while
/// the result is written.
class ComposedDocument : public PdfComposer {
 public:
  ComposedDocument();
  ~ComposedDocument() override;
  ComposedDocument(const ComposedDocument&) = delete;
  ComposedDocument& operator=(const ComposedDocument&) = delete;

  void append(const std::shared_ptr<PdfDocument>& source,
              int page,
              std::optional<int> rotation) override;
  void append(const Bitmap& picture) override;
  void append(const JpegPhoto& photo) override;

  int pageCount() const override { return pageCount_; }
  Bytes serialise() override;

 private:
  void take(const QPDFObjectHandle& page);
  void requireVersion(const std::string& version);

  // Before the document, because its streams read from the sources until it is gone.
  std::set<std::shared_ptr<SourceDocument>> sources_;
  std::unique_ptr<QPDF> document_;
  PageLinks links_;
  std::set<int> taken_;  // numbers of the page objects so far
  std::string version_;
  int pageCount_ = 0;
};

}  // namespace tolvane
