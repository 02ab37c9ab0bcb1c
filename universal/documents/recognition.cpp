#include "universal/documents/recognition.h"

#include <vector>

#include <fmt/format.h>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/images/image_decoder.h"
#include "platform/recognition/text_recognizer.h"

namespace tolvane::UniversalEngine {

std::string recognize(const Bitmap& picture, const CancellationToken& token) {
  token.check();
  const std::vector<std::string> lines = textRecognizer().lines(
      picture, TextRecognizer::unknownResolution, [&token] { return token.isCancelled(); });
  token.check();
  if (lines.empty()) {
    throw ConversionFailure::message("No text was recognized. Try a clearer image.");
  }
  return fmt::format("{}", fmt::join(lines, "\n"));
}

std::string recognize(const std::filesystem::path& image, const CancellationToken& token) {
  token.check();
  return recognize(imageDecoder().decode(image, Limits::maxImageSide), token);
}

}  // namespace tolvane::UniversalEngine
