#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "engine/primitives/value.h"

namespace tolvane {

/// What an admitted file is. Decides which actions it is offered.
enum class FileKind {
  pdf,
  image,
  document,
  presentation,
  spreadsheet,
  video,
  audio,
  ebook,
  subtitle,
  archive
};

/// The kind as the channel and the detail lines write it: "pdf", "image", ...
[[nodiscard]] std::string_view name(FileKind kind);

/// One admitted input file.
struct FileInfo {
  std::filesystem::path url;  ///< absolute, standardized, symbolic links resolved
  FileKind kind = FileKind::document;
  std::string detail;  ///< one line for people: "12 pages · PDF", "3024 × 4032 · HEIC"
  std::filesystem::path given = {};  ///< as the user named it, links not followed; may be empty

  /// Whose name the results follow.
  [[nodiscard]] const std::filesystem::path& named() const;

  /// The file entry of the channel: "path", "name", "kind", "detail", all text.
  [[nodiscard]] Value json() const;
};

}  // namespace tolvane
