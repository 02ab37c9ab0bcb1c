#include "platform/documents/qpdf/source_document.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include <qpdf/QPDF.hh>

#include "platform/documents/qpdf/library_errors.h"
#include "platform/documents/qpdf/page_geometry.h"
#include "platform/documents/qpdf/rendering_copy.h"
#include "platform/documents/qpdf/scanned_page.h"
#include "platform/images/scaled_photo.h"

namespace tolvane {

namespace {

// A copy costs about 0.3 ms for every page of the document and saves 1 to 2 ms on a page of text
// that is read: not worth it for a preview, nor for files so large that they can only be pictures.
constexpr int pagesBeforeCopying = 3;
constexpr std::uint64_t copyLimit = std::uint64_t{48} << 20U;

// libqpdf counts every entry of the page tree, whatever the entry leads to.
bool isReadable(QPDFObjectHandle page) {
  return page.isDictionary();
}

/// Whether the page reader would paint another area, or take one page for another.
bool misleadsReader(const QPDFObjectHandle& page) {
  return !isReadable(page) || PageGeometry::isCropped(page);
}

/// Empty for what no attribute should be: null, lists and the like.
std::string attributeText(QPDFObjectHandle value) {
  if (value.isString()) {
    return value.getUTF8Value();
  }
  if (value.isName()) {
    return value.getName().substr(1);
  }
  return value.isInteger() || value.isReal() || value.isBool() ? value.unparseResolved() : "";
}

}  // namespace

SourceDocument::SourceDocument(std::shared_ptr<SourceFile> file, std::shared_ptr<QPDF> document)
    : file_(std::move(file)), document_(std::move(document)), pages_(document_->getAllPages()) {}

SourceDocument::~SourceDocument() = default;

int SourceDocument::pageCount() const {
  return static_cast<int>(pages_.size());
}

const QPDFObjectHandle& SourceDocument::pageAt(int page) const {
  if (page < 0 || page >= pageCount()) {
    throw PlatformError("There is no page " + std::to_string(page + 1) + ".");
  }
  const QPDFObjectHandle& object = pages_[static_cast<std::size_t>(page)];
  if (!isReadable(object)) {
    throw PlatformError("Page " + std::to_string(page + 1) + " is damaged.");
  }
  return object;
}

QPDFObjectHandle SourceDocument::completePage(int page) {
  document_->pushInheritedAttributesToPage();
  return pageAt(page);
}

std::string SourceDocument::version() const {
  return document_->getPDFVersion();
}

PdfPageGeometry SourceDocument::geometry(int page) {
  try {
    const PdfPageGeometry geometry = PageGeometry::of(pageAt(page));
    checkUnchanged();
    return geometry;
  } catch (...) {
    LibraryErrors::rethrow();
  }
}

void SourceDocument::render(int page, int width, int height, Bitmap& bitmap) {
  const PdfPageGeometry area = geometry(page);
  if (!(area.width > 0)) {
    // The page reader would take a page of American letter size instead.
    throw PlatformError("The page has no area to paint.");
  }
  if (!renderScan(page, width, height, bitmap)) {
    reader().render(page, width, height, bitmap);
  }
  checkUnchanged();
}

bool SourceDocument::renderScan(int page, int width, int height, Bitmap& bitmap) {
  try {
    const std::optional<JpegPhoto> photo = ScannedPage::photoOf(pageAt(page));
    std::optional<Bitmap> painted = photo ? scaledPhoto(*photo, width, height) : std::nullopt;
    if (painted) {
      bitmap = *std::move(painted);
    }
    return painted.has_value();
  } catch (const std::runtime_error&) {
    return false;  // the page reader is more patient with damage
  }
}

std::string SourceDocument::text(int page) {
  static_cast<void>(pageAt(page));
  PageReader& own = reader();
  std::optional<std::string> ahead = textReadAhead(page);
  std::string text = ahead ? *std::move(ahead) : own.text(page);
  checkUnchanged();
  return text;
}

std::map<std::string, std::string> SourceDocument::attributes() {
  try {
    std::map<std::string, std::string> attributes;
    QPDFObjectHandle information = document_->getTrailer().getKey("/Info");
    if (information.isDictionary()) {
      for (const auto& [key, value] : information.getDictAsMap()) {
        if (std::string text = attributeText(value); !text.empty()) {
          attributes.emplace(key.substr(1), std::move(text));
        }
      }
    }
    checkUnchanged();
    return attributes;
  } catch (...) {
    LibraryErrors::rethrow();
  }
}

std::vector<PdfGlyph> SourceDocument::glyphs(int page) {
  static_cast<void>(pageAt(page));
  std::vector<PdfGlyph> glyphs = reader().glyphs(page);
  checkUnchanged();
  return glyphs;
}

std::optional<std::string> SourceDocument::textReadAhead(int page) {
  if (copy_ && !ahead_) {
    ahead_ = std::make_unique<TextAhead>(pageReaderFactory().open(copy_), pageCount());
  }
  return ahead_ ? ahead_->take(page) : std::nullopt;
}

PageReader& SourceDocument::reader() {
  try {
    if (!reader_) {
      reader_ = pageReaderFactory().open(file_->descriptor());
    }
    if (!copy_ && needsCopy()) {
      readFrom(copyForRendering(file_));
    } else if (!copy_ && deservesCopy()) {
      readFromCopyOnceMade();
    }
    ++pagesRead_;
    return *reader_;
  } catch (...) {
    LibraryErrors::rethrow();
  }
}

void SourceDocument::readFrom(Bytes copy) {
  auto kept = std::make_shared<const Bytes>(std::move(copy));
  reader_ = pageReaderFactory().open(kept);
  copy_ = std::move(kept);
}

void SourceDocument::readFromCopyOnceMade() {
  using namespace std::chrono_literals;
  if (!copying_.valid()) {
    copying_ = std::async(std::launch::async, copyForRendering, file_);
  } else if (copying_.wait_for(0s) == std::future_status::ready) {
    readFrom(copying_.get());
  }
}

bool SourceDocument::needsCopy() const {
  return pagesRead_ == 0 && (reader_->pageCount() != pageCount() ||
                             std::any_of(pages_.begin(), pages_.end(), misleadsReader));
}

bool SourceDocument::deservesCopy() const {
  return pagesRead_ >= pagesBeforeCopying && file_->size() <= copyLimit;
}

}  // namespace tolvane
