#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/images/bitmap.h"

namespace tolvane {

/// Reads the text in pictures. Any thread, several at a time.
class TextRecognizer {
 public:
  static constexpr int unknownResolution = 0;

  TextRecognizer() = default;
  virtual ~TextRecognizer() = default;
  TextRecognizer(const TextRecognizer&) = delete;
  TextRecognizer& operator=(const TextRecognizer&) = delete;

  /// The recognised lines in reading order, without line ends and never empty.
  /// @param dotsPerInch resolution of the picture; 144 for a page rendered at scale 2. An unknown
  /// one is estimated from the height of the lines.
  /// @param isStopped asked, in the calling thread, before each line is recognised; once it says
  /// yes, nothing more is and the result is empty. May be empty; does not throw.
  /// @throws PlatformError when no language data is installed or recognition fails.
  [[nodiscard]] virtual std::vector<std::string> lines(const Bitmap& picture,
                                                       int dotsPerInch,
                                                       const std::function<bool()>& isStopped) = 0;
};

/// Loads the library and the language data at its first use: every language that is installed,
/// English first. One object for the process.
[[nodiscard]] TextRecognizer& textRecognizer();

}  // namespace tolvane
