#include "platform/documents/qpdf/text_ahead.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tolvane {

namespace {

// Enough to hide that pages differ and that threads wait for each other; few enough to be thrown
// away when the job is cancelled.
constexpr int pagesAtOnce = 8;

}  // namespace

TextAhead::TextAhead(std::unique_ptr<PageReader> reader, int pageCount)
    : reader_(std::move(reader)), pageCount_(pageCount) {}

std::optional<std::string> TextAhead::take(int page) {
  if (reading_.valid() && page >= first_) {
    texts_ = reading_.get();
  }
  const auto index = static_cast<std::size_t>(page - first_);
  if (page >= first_ && index < texts_.size()) {
    return texts_[index];
  }
  if (!reading_.valid()) {
    startAfter(page);
  }
  return std::nullopt;
}

void TextAhead::startAfter(int page) {
  texts_.clear();
  first_ = page + pagesAtOnce;
  const int end = std::min(first_ + pagesAtOnce, pageCount_);
  if (first_ < end) {
    reading_ = std::async(std::launch::async, [this, first = first_, end] {
      Texts texts;
      for (int ahead = first; ahead < end; ++ahead) {
        texts.push_back(reader_->text(ahead));
      }
      return texts;
    });
  }
}

}  // namespace tolvane
