#include "platform/documents/qpdf/source_input.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

#include <qpdf/InputSource.hh>

namespace tolvane {

namespace {

bool endsLine(int character) {
  return character == '\r' || character == '\n';
}

/// libqpdf jumps about in the file a few bytes at a time, so a window of the file is kept. At the
/// end the position moves to where the file ended when it was opened, also when it has become
/// shorter since: while libqpdf repairs a file it reads until it is there.
class SourceInput : public InputSource {
 public:
  explicit SourceInput(std::shared_ptr<SourceFile> file);

  qpdf_offset_t findAndSkipNextEOL() override;
  const std::string& getName() const override;
  qpdf_offset_t tell() override;
  void seek(qpdf_offset_t offset, int whence) override;
  void rewind() override;
  std::size_t read(char* into, std::size_t length) override;
  void unreadCh(char character) override;

 private:
  static constexpr std::size_t windowSize = 16384;

  [[nodiscard]] int byteAt(std::uint64_t offset);  // -1 past the end
  void moveWindowTo(std::uint64_t offset);

  std::shared_ptr<SourceFile> file_;
  std::uint64_t position_ = 0;
  std::uint64_t windowStart_ = 0;
  std::size_t windowLength_ = 0;
  std::array<char, windowSize> window_{};
};

SourceInput::SourceInput(std::shared_ptr<SourceFile> file) : file_(std::move(file)) {}

const std::string& SourceInput::getName() const {
  return file_->name();
}

qpdf_offset_t SourceInput::tell() {
  return static_cast<qpdf_offset_t>(position_);
}

void SourceInput::seek(qpdf_offset_t offset, int whence) {
  const std::uint64_t base = whence == SEEK_CUR   ? position_
                             : whence == SEEK_END ? file_->size()
                                                  : 0;
  const qpdf_offset_t target = static_cast<qpdf_offset_t>(base) + offset;
  if (target < 0) {
    throw std::runtime_error(getName() + ": seek before the beginning of the file");
  }
  position_ = static_cast<std::uint64_t>(target);
}

void SourceInput::rewind() {
  position_ = 0;
}

void SourceInput::unreadCh(char) {
  --position_;
}

std::size_t SourceInput::read(char* into, std::size_t length) {
  last_offset = tell();
  std::size_t count = 0;
  if (length >= windowSize) {
    count = file_->read(position_, std::span(into, length));
  } else {
    while (count < length && byteAt(position_ + count) >= 0) {
      const std::size_t start = position_ + count - windowStart_;
      const std::size_t piece = std::min(length - count, windowLength_ - start);
      std::copy_n(window_.data() + start, piece, into + count);
      count += piece;
    }
  }
  position_ += count;
  if (count == 0 && length > 0) {
    position_ = std::max(position_, file_->size());
    last_offset = tell();
  }
  return count;
}

qpdf_offset_t SourceInput::findAndSkipNextEOL() {
  int character = byteAt(position_);
  while (character >= 0 && !endsLine(character)) {
    character = byteAt(++position_);
  }
  if (character < 0) {
    position_ = std::max(position_, file_->size());
  }
  const qpdf_offset_t lineEnd = tell();
  while (endsLine(byteAt(position_))) {
    ++position_;
  }
  return lineEnd;
}

int SourceInput::byteAt(std::uint64_t offset) {
  if (offset < windowStart_ || offset >= windowStart_ + windowLength_) {
    moveWindowTo(offset);
  }
  return windowLength_ == 0 ? -1 : static_cast<unsigned char>(window_[offset - windowStart_]);
}

void SourceInput::moveWindowTo(std::uint64_t offset) {
  windowStart_ = offset;
  windowLength_ = file_->read(offset, window_);
}

}  // namespace

std::shared_ptr<InputSource> inputFrom(std::shared_ptr<SourceFile> file) {
  return std::make_shared<SourceInput>(std::move(file));
}

}  // namespace tolvane
