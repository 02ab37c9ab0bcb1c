// Writes the files that the whole-job benchmarks work on, the same at every run.
// usage: benchmark_inputs FOLDER

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <turbojpeg.h>
#include <vector>

#include <cairo-pdf.h>
#include <cairo.h>

namespace {

namespace fs = std::filesystem;

struct Release {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(void* compressor) const { tjDestroy(compressor); }
};
using Context = std::unique_ptr<cairo_t, Release>;
using Surface = std::unique_ptr<cairo_surface_t, Release>;
using Bytes = std::vector<unsigned char>;

constexpr double pageWidth = 595;
constexpr double pageHeight = 842;

/// Words of a made-up language, so that no two lines are alike.
class Prose {
 public:
  std::string line(std::size_t length) {
    static const std::vector<std::string> words = {
        "the",    "page",  "holds",  "a",      "line",  "of",     "plain",   "words",  "which",
        "every",  "other", "reader", "should", "find",  "easily", "without", "any",    "great",
        "effort", "and",   "turns",  "again",  "under", "lamp",   "light",   "12,345", "2026"};
    std::string text;
    while (text.size() < length) {
      text += words[random_() % words.size()] + " ";
    }
    return text;
  }

 private:
  std::mt19937 random_{1};
};

void drawPage(cairo_t* context, Prose& prose) {
  cairo_select_font_face(
      context, "DejaVu Serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(context, 10);
  cairo_set_source_rgb(context, 0, 0, 0);
  for (double y = 60; y < pageHeight - 50; y += 14) {
    cairo_move_to(context, 50, y);
    cairo_show_text(context, prose.line(80).c_str());
  }
}

void writeTextPdf(const fs::path& file, int pages) {
  const Surface surface(cairo_pdf_surface_create(file.c_str(), pageWidth, pageHeight));
  const Context context(cairo_create(surface.get()));
  Prose prose;
  for (int page = 0; page < pages; ++page) {
    drawPage(context.get(), prose);
    cairo_show_page(context.get());
  }
}

Bytes jpeg(
    const unsigned char* pixels, int width, int height, int stride, TJPF format, TJSAMP sampling) {
  const std::unique_ptr<void, Release> compressor(tjInitCompress());
  unsigned char* data = nullptr;
  unsigned long size = 0;
  tjCompress2(
      compressor.get(), pixels, width, stride, height, format, &data, &size, sampling, 85, 0);
  Bytes bytes(data, data + size);
  tjFree(data);
  return bytes;
}

/// A page of text as a grey scanner sees it at 300 dots an inch: noisy.
Bytes scannedPage(Prose& prose, std::mt19937& random) {
  constexpr double scale = 300.0 / 72.0;
  const int width = static_cast<int>(pageWidth * scale);
  const int height = static_cast<int>(pageHeight * scale);
  const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
  const Context context(cairo_create(surface.get()));
  cairo_set_source_rgb(context.get(), 0.97, 0.97, 0.97);
  cairo_paint(context.get());
  cairo_scale(context.get(), scale, scale);
  drawPage(context.get(), prose);
  cairo_surface_flush(surface.get());
  const unsigned char* pixels = cairo_image_surface_get_data(surface.get());
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
  Bytes grey;
  grey.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
    for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x) {
      const int noisy = pixels[y * stride + x * 4] + static_cast<int>(random() % 17) - 8;
      grey.push_back(static_cast<unsigned char>(noisy < 0 ? 0 : noisy > 255 ? 255 : noisy));
    }
  }
  return jpeg(grey.data(), width, height, width, TJPF_GRAY, TJSAMP_GRAY);
}

void writeScanPdf(const fs::path& file, int pages) {
  const Surface surface(cairo_pdf_surface_create(file.c_str(), pageWidth, pageHeight));
  const Context context(cairo_create(surface.get()));
  Prose prose;
  std::mt19937 random(2);
  for (int page = 0; page < pages; ++page) {
    Bytes data = scannedPage(prose, random);
    const Surface picture(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 2479, 3508));
    auto* kept = new Bytes(std::move(data));
    cairo_surface_set_mime_data(
        picture.get(),
        CAIRO_MIME_TYPE_JPEG,
        kept->data(),
        kept->size(),
        [](void* bytes) { delete static_cast<Bytes*>(bytes); },
        kept);
    cairo_save(context.get());
    cairo_scale(context.get(), 72.0 / 300.0, 72.0 / 300.0);
    cairo_set_source_surface(context.get(), picture.get(), 0, 0);
    cairo_paint(context.get());
    cairo_restore(context.get());
    cairo_show_page(context.get());
  }
}

/// 12 megapixels with soft shapes and sensor noise.
void writePhoto(const fs::path& file) {
  constexpr int width = 4000;
  constexpr int height = 3000;
  std::mt19937 random(3);
  Bytes pixels;
  pixels.reserve(std::size_t{width} * height * 3);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double wave = std::sin(x / 90.0) * std::cos(y / 70.0) + std::sin((x + y) / 400.0);
      for (int component = 0; component < 3; ++component) {
        const double level =
            128 + 50 * wave * (1 + component * 0.2) + static_cast<double>(random() % 13);
        pixels.push_back(static_cast<unsigned char>(level < 0 ? 0 : level > 255 ? 255 : level));
      }
    }
  }
  const Bytes data = jpeg(pixels.data(), width, height, width * 3, TJPF_RGB, TJSAMP_420);
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::fprintf(stderr, "usage: benchmark_inputs FOLDER\n");
    return 2;
  }
  const fs::path folder = words[1];
  writeTextPdf(folder / "text.pdf", 200);
  writeTextPdf(folder / "long.pdf", 500);
  writeTextPdf(folder / "few.pdf", 4);
  for (int part = 0; part < 10; ++part) {
    writeTextPdf(folder / ("part" + std::to_string(part) + ".pdf"), 50);
  }
  writeScanPdf(folder / "scan.pdf", 20);
  writePhoto(folder / "photo.jpg");
  return 0;
}
