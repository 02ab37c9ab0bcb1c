#pragma once

#include <memory>

#include "platform/documents/poppler/page_characters.h"
#include "platform/files/bytes.h"
#include "platform/files/descriptor.h"

class BaseStream;
class GooFile;
class PDFDoc;

namespace tolvane {

/// A PDF whose text is read by poppler's own interface, because that of its GLib binding passes
/// over words of pages that are read from right to left, glues cells of tables and needs two more
/// passes for the boxes.
class TextSource {
 public:
  /// @param descriptor stays the caller's. @throws PlatformError when it is no PDF; so does the
  /// other.
  explicit TextSource(int descriptor);
  explicit TextSource(std::shared_ptr<const Bytes> pdf);
  ~TextSource();
  TextSource(const TextSource&) = delete;
  TextSource& operator=(const TextSource&) = delete;

  /// @throws PlatformError
  [[nodiscard]] static Descriptor duplicateOf(int descriptor);

  /// As the file states it, which may be wrong.
  [[nodiscard]] int pageCount() const;
  /// With the text of annotations and form fields that the page shows.
  /// @throws PlatformError when there is no such page.
  [[nodiscard]] PageCharacters read(int page);

 private:
  void open(BaseStream* owned);

  std::unique_ptr<GooFile> file_;
  std::shared_ptr<const Bytes> bytes_;
  std::unique_ptr<PDFDoc> document_;
};

}  // namespace tolvane
