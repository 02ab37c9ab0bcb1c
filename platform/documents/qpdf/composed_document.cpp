#include "platform/documents/qpdf/composed_document.h"

#include <algorithm>

#include <qpdf/QPDF.hh>

#include "platform/documents/qpdf/library_errors.h"
#include "platform/documents/qpdf/output.h"
#include "platform/documents/qpdf/picture_page.h"

namespace tolvane {

namespace {

constexpr const char* versionWithSoftMasks = "1.4";

}  // namespace

ComposedDocument::ComposedDocument()
    : document_(std::make_unique<QPDF>()), version_(versionWithSoftMasks) {
  document_->setSuppressWarnings(true);
  document_->emptyPDF();
}

ComposedDocument::~ComposedDocument() = default;

void ComposedDocument::append(const std::shared_ptr<PdfDocument>& source,
                              int page,
                              std::optional<int> rotation) {
  const auto document = std::dynamic_pointer_cast<SourceDocument>(source);
  if (!document) {
    throw PlatformError("The page belongs to a document of another library.");
  }
  try {
    sources_.insert(document);
    const QPDFObjectHandle original = document->completePage(page);
    QPDFObjectHandle copy = document_->copyForeignObject(original);
    if (!taken_.insert(copy.getObjectID()).second) {
      copy = document_->makeIndirectObject(copy.shallowCopy());
    }
    links_.add(original, copy);
    if (rotation) {
      copy.replaceKey("/Rotate", QPDFObjectHandle::newInteger(*rotation));
    }
    document->checkUnchanged();
    take(copy);
    requireVersion(document->version());
  } catch (...) {
    LibraryErrors::rethrow();
  }
}

void ComposedDocument::append(const Bitmap& picture) {
  try {
    take(PicturePage::of(*document_, picture));
  } catch (...) {
    LibraryErrors::rethrow();
  }
}

void ComposedDocument::append(const JpegPhoto& photo) {
  try {
    take(PicturePage::of(*document_, photo));
  } catch (...) {
    LibraryErrors::rethrow();
  }
}

Bytes ComposedDocument::serialise() {
  try {
    links_.connect(*document_);
    Bytes bytes = written(*document_, version_, Packing::smallest);
    for (const std::shared_ptr<SourceDocument>& source : sources_) {
      source->checkUnchanged();
    }
    return bytes;
  } catch (...) {
    LibraryErrors::rethrow();
  }
}

void ComposedDocument::take(const QPDFObjectHandle& page) {
  document_->addPage(page, false);
  ++pageCount_;
}

// Versions are "1.0" to "1.7" and "2.0", so they compare as text.
void ComposedDocument::requireVersion(const std::string& version) {
  version_ = std::max(version_, version);
}

}  // namespace tolvane
