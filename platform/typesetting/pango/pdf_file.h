#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>

#include <cairo.h>

namespace tolvane {

/// A PDF that cairo writes page by page. It holds no date, so that equal pages make equal files.
class PdfFile {
 public:
  /// @param width, height of every page in points.
  /// @throws PlatformError when the file cannot be opened or the drawing set up.
  PdfFile(const std::filesystem::path& path, double width, double height);
  ~PdfFile();
  PdfFile(const PdfFile&) = delete;
  PdfFile& operator=(const PdfFile&) = delete;

  /// Draws on the current page; the origin is its upper left corner.
  [[nodiscard]] cairo_t* context() const { return context_.get(); }

  /// @throws PlatformError when the file could not be written so far.
  void endPage();
  /// @throws PlatformError when the file could not be written.
  void finish();

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  struct Destroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
  };

  static cairo_status_t write(void* self, const unsigned char* bytes, unsigned count);
  void check(cairo_status_t status) const;

  std::filesystem::path path_;
  std::unique_ptr<std::FILE, Close> file_;
  int writeError_ = 0;  // an error number; 0 for none
  std::unique_ptr<cairo_surface_t, Destroy> surface_;
  std::unique_ptr<cairo_t, Destroy> context_;
};

}  // namespace tolvane
