#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/documents/pdf_glyph.h"
#include "platform/files/bytes.h"
#include "platform/files/platform_error.h"
#include "platform/images/bitmap.h"
#include "platform/images/image_decoder.h"

namespace tolvane {

/// The media box of a page in points, before rotation, and the page's own rotation in degrees, as
/// the file states it (-90 and 450 are possible). A missing box is of American letter size; an
/// empty one is reported as 0 x 0.
struct PdfPageGeometry {
  double width = 0;
  double height = 0;
  int rotation = 0;
};

/// Why a PDF did not open.
class PdfOpenError : public PlatformError {
 public:
  enum class Reason { damaged, locked };
  PdfOpenError(Reason reason, const std::string& text) : PlatformError(text), reason_(reason) {}
  [[nodiscard]] Reason reason() const { return reason_; }

 private:
  Reason reason_;
};

/// An open PDF. Pages are counted from 0. The file must stay as it is while the document lives; a
/// change shows as a PlatformError from the next call. Worker thread. Not safe to share between
/// threads.
class PdfDocument {
 public:
  PdfDocument() = default;
  virtual ~PdfDocument() = default;
  PdfDocument(const PdfDocument&) = delete;
  PdfDocument& operator=(const PdfDocument&) = delete;

  [[nodiscard]] virtual int pageCount() const = 0;
  /// @throws PlatformError when there is no such page or it cannot be read; so do the others.
  [[nodiscard]] virtual PdfPageGeometry geometry(int page) = 0;
  /// Paints the media box, turned as the page is, over white into exactly width x height pixels.
  /// @param bitmap becomes bgrx; its memory is reused when it is large enough.
  virtual void render(int page, int width, int height, Bitmap& bitmap) = 0;
  /// The text layer in reading order, lines separated by line feeds, the cells of a row by tabs;
  /// empty when there is none.
  [[nodiscard]] virtual std::string text(int page) = 0;
  /// What the document says of itself: "Title", "Author", "CreationDate", ... and their text,
  /// UTF-8; dates as they are written, "D:20240131120000Z".
  [[nodiscard]] virtual std::map<std::string, std::string> attributes() = 0;
  /// The characters of the text layer without line feeds, each with its box; those of a word stand
  /// from left to right, also where they are read from right to left.
  [[nodiscard]] virtual std::vector<PdfGlyph> glyphs(int page) = 0;
};

/// A PDF being put together. Keeps the documents whose pages it takes alive.
class PdfComposer {
 public:
  PdfComposer() = default;
  virtual ~PdfComposer() = default;
  PdfComposer(const PdfComposer&) = delete;
  PdfComposer& operator=(const PdfComposer&) = delete;

  /// Appends a copy of a page. The same page may be taken more than once.
  /// @param rotation replaces the page's own, in degrees; nullopt keeps it.
  /// @param source must come from the same library object.
  virtual void append(const std::shared_ptr<PdfDocument>& source,
                      int page,
                      std::optional<int> rotation) = 0;
  /// Appends a page of one point a pixel that shows the picture. Alpha becomes a soft mask.
  virtual void append(const Bitmap& picture) = 0;
  /// As above; the page is upright (orientation applied) and the JPEG data are kept bit by bit.
  virtual void append(const JpegPhoto& photo) = 0;

  [[nodiscard]] virtual int pageCount() const = 0;
  [[nodiscard]] virtual Bytes serialise() = 0;
};

class PdfLibrary {
 public:
  PdfLibrary() = default;
  virtual ~PdfLibrary() = default;
  PdfLibrary(const PdfLibrary&) = delete;
  PdfLibrary& operator=(const PdfLibrary&) = delete;

  /// Reads on demand: the file is not taken into memory by opening it.
  /// @throws PdfOpenError, or PlatformError when the file cannot be read.
  [[nodiscard]] virtual std::shared_ptr<PdfDocument> open(const std::filesystem::path& file) = 0;
  /// @return the number of pages of a PDF in memory, opened anew. @throws PdfOpenError
  [[nodiscard]] virtual int countPages(BytesView pdf) = 0;
  [[nodiscard]] virtual std::unique_ptr<PdfComposer> compose() = 0;
};

/// Loads the PDF libraries at its first use. One object for the process.
[[nodiscard]] PdfLibrary& pdfLibrary();

}  // namespace tolvane
