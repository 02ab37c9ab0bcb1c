#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/primitives/cancellation_token.h"
#include "platform/text/code_page.h"

namespace tolvane {

/// The names in an archive, as UTF-8. ZIP archives of older programs do not say in which code page
/// their names are: it is that of DOS (437), or the Japanese one (932) where the names make sense
/// in it. One thread.
class ArchiveNames {
 public:
  /// For an archive whose names are what they are, in whatever encoding.
  ArchiveNames() = default;
  /// @param names all of a ZIP archive, as it holds them.
  explicit ArchiveNames(const std::vector<std::string_view>& names);

  /// @return the name in UTF-8, or as it is when it is UTF-8 already or no ZIP archive's.
  [[nodiscard]] std::string readable(std::string_view name) const;

  /// Renames what was extracted to its readable names.
  /// @throws ConversionFailure when cancelled; PlatformError when two items would have one name.
  void applyTo(const std::filesystem::path& root, const CancellationToken& token) const;

 private:
  std::unique_ptr<CodePage> codePage_;  // null when every name stays as it is
};

}  // namespace tolvane
