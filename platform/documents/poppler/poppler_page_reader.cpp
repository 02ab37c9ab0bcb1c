#include "platform/documents/poppler/poppler_page_reader.h"

#include <cstddef>
#include <utility>

#include <cairo.h>
#include <poppler.h>

#include "platform/documents/poppler/page_characters.h"
#include "platform/documents/poppler/page_text.h"
#include "platform/documents/poppler/text_source.h"
#include "platform/files/descriptor.h"
#include "platform/files/platform_error.h"
#include "platform/text/utf16_joiner.h"

namespace tolvane {

namespace {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GRef = std::unique_ptr<T, Unref>;

struct ErrorFree {
  void operator()(GError* error) const { g_error_free(error); }
};
struct BytesUnref {
  void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
};
struct SurfaceDestroy {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDestroy {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

GRef<PopplerDocument> owned(PopplerDocument* document, GError* error) {
  const std::unique_ptr<GError, ErrorFree> ownedError(error);
  if (document == nullptr) {
    throw PlatformError(ownedError ? ownedError->message : "The pages could not be read.");
  }
  return GRef<PopplerDocument>(document);
}

GRef<PopplerPage> pageOf(PopplerDocument* document, int index) {
  GRef<PopplerPage> page(poppler_document_get_page(document, index));
  if (!page) {
    throw PlatformError("There is no page " + std::to_string(index + 1) + ".");
  }
  return page;
}

void throwUnlessGood(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS) {
    throw PlatformError(cairo_status_to_string(status));
  }
}

void makeWhite(Bitmap& bitmap, int width, int height) {
  bitmap.width = width;
  bitmap.height = height;
  bitmap.layout = PixelLayout::bgrx;
  bitmap.pixels.assign(bitmap.stride() * static_cast<std::size_t>(height), 0xFF);
}

GRef<PopplerDocument> opened(Descriptor descriptor) {
  GError* error = nullptr;
  PopplerDocument* document = poppler_document_new_from_fd(descriptor.release(), nullptr, &error);
  return owned(document, error);
}

GRef<PopplerDocument> opened(const std::shared_ptr<const Bytes>& pdf) {
  using Kept = std::shared_ptr<const Bytes>;
  const std::unique_ptr<GBytes, BytesUnref> bytes(g_bytes_new_with_free_func(
      pdf->data(),
      pdf->size(),
      [](gpointer owner) { delete static_cast<Kept*>(owner); },
      std::make_unique<Kept>(pdf).release()));
  GError* error = nullptr;
  PopplerDocument* document = poppler_document_new_from_bytes(bytes.get(), nullptr, &error);
  return owned(document, error);
}

void ignoreMessage(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

}  // namespace

struct PopplerPageReader::Handle {
  explicit Handle(int descriptor) : text(descriptor), own(TextSource::duplicateOf(descriptor)) {}
  explicit Handle(const std::shared_ptr<const Bytes>& pdf) : text(pdf), bytes(pdf) {}

  /// Opened when a page is first painted.
  PopplerDocument* painted() {
    if (!document) {
      document = bytes ? opened(bytes) : opened(std::move(own));
    }
    return document.get();
  }

  TextSource text;
  Descriptor own;
  std::shared_ptr<const Bytes> bytes;
  GRef<PopplerDocument> document;
};

PopplerPageReader::PopplerPageReader(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

PopplerPageReader::~PopplerPageReader() = default;

int PopplerPageReader::pageCount() {
  return handle_->text.pageCount();
}

void PopplerPageReader::render(int page, int width, int height, Bitmap& bitmap) {
  const GRef<PopplerPage> source = pageOf(handle_->painted(), page);
  double pageWidth = 0;
  double pageHeight = 0;
  poppler_page_get_size(source.get(), &pageWidth, &pageHeight);
  if (width < 1 || height < 1 || !(pageWidth > 0) || !(pageHeight > 0)) {
    throw PlatformError("The page has no area to paint.");
  }
  // cairo refuses what it cannot address before a byte of it is allocated here.
  const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_RGB24, width);
  if (stride < 0) {
    throwUnlessGood(CAIRO_STATUS_INVALID_STRIDE);
  }
  makeWhite(bitmap, width, height);
  const std::unique_ptr<cairo_surface_t, SurfaceDestroy> surface(
      cairo_image_surface_create_for_data(
          bitmap.pixels.data(), CAIRO_FORMAT_RGB24, width, height, stride));
  throwUnlessGood(cairo_surface_status(surface.get()));
  const std::unique_ptr<cairo_t, ContextDestroy> context(cairo_create(surface.get()));
  cairo_scale(context.get(), width / pageWidth, height / pageHeight);
  poppler_page_render(source.get(), context.get());
  throwUnlessGood(cairo_status(context.get()));
  cairo_surface_flush(surface.get());
}

std::string PopplerPageReader::text(int page) {
  return textOf(handle_->text.read(page));
}

std::vector<PdfGlyph> PopplerPageReader::glyphs(int page) {
  const PageCharacters characters = handle_->text.read(page);
  std::vector<PdfGlyph> glyphs;
  glyphs.reserve(characters.size());
  for (const auto& [code, box, opens, course] : characters) {
    PdfGlyph& glyph = glyphs.emplace_back();
    appendUtf8(code, glyph.text);
    glyph.x = box.x1;
    glyph.y = box.y1;
    glyph.width = box.x2 - box.x1;
    glyph.height = box.y2 - box.y1;
  }
  return glyphs;
}

PopplerPageReaderFactory::PopplerPageReaderFactory() {
  // What poppler finds wrong in a file belongs neither on standard error nor to the user.
  constexpr auto everyLevel = static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_RECURSION);
  g_log_set_handler("Poppler", everyLevel, ignoreMessage, nullptr);
}

std::unique_ptr<PageReader> PopplerPageReaderFactory::open(int descriptor) {
  return std::make_unique<PopplerPageReader>(
      std::make_unique<PopplerPageReader::Handle>(descriptor));
}

std::unique_ptr<PageReader> PopplerPageReaderFactory::open(std::shared_ptr<const Bytes> pdf) {
  return std::make_unique<PopplerPageReader>(std::make_unique<PopplerPageReader::Handle>(pdf));
}

}  // namespace tolvane
