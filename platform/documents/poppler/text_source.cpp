#include "platform/documents/poppler/text_source.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <utility>

#include <poppler/GlobalParams.h>
#include <poppler/PDFDoc.h>
#include <poppler/Stream.h>
#include <poppler/TextOutputDev.h>
#include <poppler/goo/gfile.h>

#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

void ignoreError(ErrorCategory, Goffset, const char*) {}

struct ReferenceDrop {
  void operator()(TextPage* page) const { page->decRefCnt(); }
};

void appendWord(const TextWord& word, Opens opens, PageCharacters& characters) {
  const Course course = word.getRotation() % 2 == 0 ? Course::across : Course::down;
  for (int index = 0; index < word.getLength(); ++index) {
    if (const Unicode code = *word.getChar(index); code != 0) {
      PageCharacter& character = characters.emplace_back(
          PageCharacter{code, {}, std::exchange(opens, Opens::nothing), course});
      TextBox& box = character.box;
      word.getCharBBox(index, &box.x1, &box.y1, &box.x2, &box.y2);
    }
  }
}

/// Between two words, unless they touch: poppler believes in a space beside any short word.
void appendBlank(const TextWord& word, PageCharacters& characters) {
  constexpr double touching = 0.05;  // of the font's size
  const TextWord* const next = word.getNext();
  if (next == nullptr || !word.getSpaceAfter() || characters.empty()) {
    return;
  }
  TextBox box = characters.back().box;
  TextBox after;
  next->getBBox(&after.x1, &after.y1, &after.x2, &after.y2);
  const bool isAcross = word.getRotation() % 2 == 0;
  const double gap = isAcross ? std::max(box.x1, after.x1) - std::min(box.x2, after.x2)
                              : std::max(box.y1, after.y1) - std::min(box.y2, after.y2);
  if (gap > touching * next->getFontSize()) {
    box.x1 = std::exchange(box.x2, after.x1);
    characters.push_back({' ', box});
  }
}

PageCharacters charactersOf(const TextPage& page) {
  PageCharacters characters;
  for (const TextFlow* flow = page.getFlows(); flow != nullptr; flow = flow->getNext()) {
    for (const TextBlock* block = flow->getBlocks(); block != nullptr; block = block->getNext()) {
      Opens opens = Opens::block;
      for (const TextLine* line = block->getLines(); line != nullptr; line = line->getNext()) {
        for (const TextWord* word = line->getWords(); word != nullptr; word = word->getNext()) {
          appendWord(*word, std::exchange(opens, Opens::nothing), characters);
          appendBlank(*word, characters);
        }
        opens = Opens::line;
      }
    }
  }
  return characters;
}

/// poppler's settings, kept for the process.
void startLibrary() {
  static const GlobalParamsIniter settings(ignoreError);
}

}  // namespace

TextSource::TextSource(int descriptor) : file_(GooFile::open(duplicateOf(descriptor).release())) {
  if (!file_) {
    throw PlatformError("The pages could not be read.");
  }
  open(new FileStream(file_.get(), 0, false, file_->size(), Object(objNull)));
}

TextSource::TextSource(std::shared_ptr<const Bytes> pdf) : bytes_(std::move(pdf)) {
  const auto* data = reinterpret_cast<const char*>(bytes_->data());
  open(new MemStream(data, 0, static_cast<Goffset>(bytes_->size()), Object(objNull)));
}

Descriptor TextSource::duplicateOf(int descriptor) {
  Descriptor own(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
  if (!own.isOpen()) {
    throw PlatformError::fromErrno("dup", "PDF", errno);
  }
  return own;
}

TextSource::~TextSource() = default;

void TextSource::open(BaseStream* owned) {
  startLibrary();
  document_ = std::make_unique<PDFDoc>(owned);
  if (!document_->isOk()) {
    throw PlatformError("The pages could not be read.");
  }
}

int TextSource::pageCount() const {
  return document_->getNumPages();
}

PageCharacters TextSource::read(int page) {
  if (page < 0 || page >= pageCount()) {
    throw PlatformError("There is no page " + std::to_string(page + 1) + ".");
  }
  constexpr double pointsPerInch = 72;
  TextOutputDev output(nullptr, false, 0, false, false);
  document_->displayPage(&output, page + 1, pointsPerInch, pointsPerInch, 0, true, false, false);
  const std::unique_ptr<TextPage, ReferenceDrop> text(output.takeText());
  return text ? charactersOf(*text) : PageCharacters();
}

}  // namespace tolvane
