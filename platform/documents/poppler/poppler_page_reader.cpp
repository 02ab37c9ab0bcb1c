#include "platform/documents/poppler/poppler_page_reader.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <utility>

#include <cairo.h>
#include <poppler.h>

#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GRef = std::unique_ptr<T, Unref>;

struct Free {
  void operator()(gpointer memory) const { g_free(memory); }
};
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

std::string textOf(PopplerPage* page) {
  const std::unique_ptr<char, Free> text(poppler_page_get_text(page));
  return text ? text.get() : std::string();
}

void ignoreMessage(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

}  // namespace

struct PopplerPageReader::Handle {
  explicit Handle(GRef<PopplerDocument> opened) : document(std::move(opened)) {}

  GRef<PopplerDocument> document;
};

PopplerPageReader::PopplerPageReader(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

PopplerPageReader::~PopplerPageReader() = default;

int PopplerPageReader::pageCount() {
  return poppler_document_get_n_pages(handle_->document.get());
}

void PopplerPageReader::render(int page, int width, int height, Bitmap& bitmap) {
  const GRef<PopplerPage> source = pageOf(handle_->document.get(), page);
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
  const GRef<PopplerPage> source = pageOf(handle_->document.get(), page);
  return textOf(source.get());
}

std::vector<PdfGlyph> PopplerPageReader::glyphs(int page) {
  const GRef<PopplerPage> source = pageOf(handle_->document.get(), page);
  const std::string text = textOf(source.get());
  PopplerRectangle* first = nullptr;
  guint count = 0;
  poppler_page_get_text_layout(source.get(), &first, &count);
  const std::unique_ptr<PopplerRectangle, Free> boxes(first);
  std::vector<PdfGlyph> glyphs;
  glyphs.reserve(count);
  // Line feeds have boxes of their own; should the numbers differ, the rest has none.
  const char* next = text.c_str();
  for (guint index = 0; index < count && *next != '\0'; ++index) {
    const char* const character = next;
    next = g_utf8_next_char(character);
    if (*character != '\n' && *character != '\r') {
      const PopplerRectangle& box = boxes.get()[index];
      glyphs.push_back({{character, next}, box.x1, box.y1, box.x2 - box.x1, box.y2 - box.y1});
    }
  }
  return glyphs;
}

PopplerPageReaderFactory::PopplerPageReaderFactory() {
  // What poppler finds wrong in a file belongs neither on standard error nor to the user.
  constexpr auto everyLevel = static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_RECURSION);
  g_log_set_handler("Poppler", everyLevel, ignoreMessage, nullptr);
}

std::unique_ptr<PageReader> PopplerPageReaderFactory::open(int descriptor) {
  const int own = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  if (own < 0) {
    throw PlatformError::fromErrno("dup", "PDF", errno);
  }
  GError* error = nullptr;
  PopplerDocument* document = poppler_document_new_from_fd(own, nullptr, &error);
  return std::make_unique<PopplerPageReader>(
      std::make_unique<PopplerPageReader::Handle>(owned(document, error)));
}

std::unique_ptr<PageReader> PopplerPageReaderFactory::open(std::shared_ptr<const Bytes> pdf) {
  using Kept = std::shared_ptr<const Bytes>;
  const std::uint8_t* data = pdf->data();
  const std::size_t size = pdf->size();
  auto kept = std::make_unique<Kept>(std::move(pdf));
  const std::unique_ptr<GBytes, BytesUnref> bytes(g_bytes_new_with_free_func(
      data, size, [](gpointer owner) { delete static_cast<Kept*>(owner); }, kept.release()));
  GError* error = nullptr;
  PopplerDocument* document = poppler_document_new_from_bytes(bytes.get(), nullptr, &error);
  return std::make_unique<PopplerPageReader>(
      std::make_unique<PopplerPageReader::Handle>(owned(document, error)));
}

}  // namespace tolvane
