#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/bytes.h"

namespace tolvane::UniversalEngine {

/// The larger PNG, JPEG and GIF pictures that stand in a Markdown or HTML text as data addresses,
/// "![](data:image/png;base64,...)" or "<img src="data:...">", taken out of it and named instead:
/// pandoc takes many seconds for each megabyte of such an address.
class EmbeddedPictures {
 public:
  /// @param text outlives this object.
  /// @param prefix of the names; occurs nowhere else.
  EmbeddedPictures(std::string_view text, std::string prefix);

  /// Whether the text holds no such picture.
  [[nodiscard]] bool isEmpty() const { return pictures_.empty(); }
  /// The text with names in the place of the pictures.
  [[nodiscard]] const std::string& lighterText() const { return lighterText_; }
  /// Writes the pictures under their names, which are relative to `folder`. @throws PlatformError
  void write(const std::filesystem::path& folder) const;
  /// @return `converted` with the addresses in the place of the names.
  [[nodiscard]] std::string putBack(std::string_view converted) const;

 private:
  struct Picture {
    std::string name;
    std::string_view address;
    Bytes bytes;
  };

  std::string prefix_;
  std::vector<Picture> pictures_;
  std::string lighterText_;
};

}  // namespace tolvane::UniversalEngine
