#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <sys/stat.h>

#include "platform/files/descriptor.h"

namespace tolvane {

/// A file that is read on demand and must stay as it was when it was opened. It is read rather than
/// mapped, because a mapped file that is cut short ends the process.
class SourceFile {
 public:
  /// @throws PlatformError when the file cannot be opened.
  explicit SourceFile(std::filesystem::path path);
  ~SourceFile() = default;
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;

  [[nodiscard]] const std::string& name() const { return path_.native(); }
  [[nodiscard]] std::uint64_t size() const { return static_cast<std::uint64_t>(opened_.st_size); }
  [[nodiscard]] int descriptor() const { return descriptor_.number(); }

  /// @return the bytes read; fewer than asked for only at the end of the file. A failure reads as
  /// the end of the file, because libqpdf takes exceptions for damage; checkUnchanged() tells it.
  std::size_t read(std::uint64_t offset, std::span<char> into) noexcept;

  /// To be called after a piece of work, before its result is used.
  /// @throws PlatformError when reading failed, or when the file was replaced, removed or written
  /// to since it was opened.
  void checkUnchanged() const;

 private:
  std::filesystem::path path_;
  Descriptor descriptor_;
  struct stat opened_ {};
  std::atomic<int> readFailure_ = 0;  // errno of the first failed read
};

}  // namespace tolvane
