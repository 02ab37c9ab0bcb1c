#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/files/bytes.h"
#include "platform/files/descriptor.h"

namespace tolvane {

/// The file that takes what an engine prints. It is deleted with this object.
class ProcessLog {
 public:
  /// Creates ".process-<UUID>.log" (mode 0600) in `folder`.
  /// @throws PlatformError when it cannot be opened.
  explicit ProcessLog(const std::filesystem::path& folder);
  ~ProcessLog();
  ProcessLog(const ProcessLog&) = delete;
  ProcessLog& operator=(const ProcessLog&) = delete;

  /// Open for appending, never inherited by itself; owned by this object.
  [[nodiscard]] int descriptor() const { return file_.number(); }

  /// @return its present size in bytes; nullopt when it cannot be told.
  [[nodiscard]] std::optional<std::uint64_t> size() const;

  /// Everything that was printed, after flushing it to the disk.
  /// @throws PlatformError when it cannot be flushed, or when the file is no longer there to be
  /// read.
  [[nodiscard]] Bytes content() const;

 private:
  std::filesystem::path path_;
  Descriptor file_;
};

}  // namespace tolvane
