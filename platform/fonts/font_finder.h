#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

/// Finds the files of installed fonts. Worker thread.
class FontFinder {
 public:
  FontFinder() = default;
  virtual ~FontFinder() = default;
  FontFinder(const FontFinder&) = delete;
  FontFinder& operator=(const FontFinder&) = delete;

  /// The file of an outline font, for programs that draw all of a text with one file. It is what
  /// the machine has for `family`, unless another font lacks fewer of the text's characters.
  /// @param text UTF-8.
  /// @return nullopt when no font is installed.
  [[nodiscard]] virtual std::optional<std::filesystem::path> find(const std::string& family,
                                                                  std::string_view text) = 0;
};

/// Loads the library at its first use. One object for the process.
[[nodiscard]] FontFinder& fontFinder();

}  // namespace tolvane
