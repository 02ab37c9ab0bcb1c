#include "universal/combined/combined.h"

#include "engine/primitives/conversion_failure.h"
#include "universal/combined/collage.h"
#include "universal/combined/joined_video.h"
#include "universal/images/image.h"

namespace tolvane::UniversalEngine {

std::vector<std::filesystem::path> combined(const std::vector<FileInfo>& inputs,
                                            std::string_view tool,
                                            const Value::Map& /*options*/,
                                            const JobContext& context) {
  if (tool == "create_pdf") {
    return context.native("images_pdf", normalizedAll(inputs, context), {});
  }
  if (tool == "collage") {
    return {collage(inputs, context)};
  }
  if (tool == "join") {
    return {joinedVideo(inputs, context)};
  }
  throw ConversionFailure::message("This combined operation is unavailable.");
}

}  // namespace tolvane::UniversalEngine
