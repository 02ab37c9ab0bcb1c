#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tolvane {

/// What every page of a text looks like. Lengths in points.
struct PageStyle {
  double width = 0;
  double height = 0;
  double inset = 0;  ///< between the edge of the page and the text, on every side
  std::string font;  ///< family and size, such as "Sans 12"; other fonts serve what it lacks
};

/// A text on its way into a PDF, page by page. Closes the file when it goes; what was not finished
/// is no complete PDF. Worker thread.
class TextPages {
 public:
  TextPages() = default;
  virtual ~TextPages() = default;
  TextPages(const TextPages&) = delete;
  TextPages& operator=(const TextPages&) = delete;

  /// Sets as much of the text as fits on one page and writes the page. Every line is laid out once,
  /// so that the time for a text grows with its length and no faster.
  /// @throws PlatformError when the file cannot be written.
  virtual void addPage() = 0;
  /// @return whether the pages so far hold the whole text.
  [[nodiscard]] virtual bool isComplete() const = 0;
  /// Ends the file. The last call. @throws PlatformError when the file cannot be written.
  virtual void finish() = 0;
};

/// Sets text of any script: right-to-left text from right to left, letters joined and fonts chosen
/// as the script asks for, fonts embedded.
class Typesetter {
 public:
  Typesetter() = default;
  virtual ~Typesetter() = default;
  Typesetter(const Typesetter&) = delete;
  Typesetter& operator=(const Typesetter&) = delete;

  /// @param text UTF-8; not owned, outlives the pages. TextPieces says how it is divided.
  /// @param to the PDF; replaced when it exists.
  /// @throws PlatformError when the file cannot be opened for writing.
  [[nodiscard]] virtual std::unique_ptr<TextPages> open(std::string_view text,
                                                        const PageStyle& style,
                                                        const std::filesystem::path& to) = 0;
};

/// Loads the layout libraries at its first use. One object for the process.
[[nodiscard]] Typesetter& typesetter();

}  // namespace tolvane
