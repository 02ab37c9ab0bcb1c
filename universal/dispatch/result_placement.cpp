#include "universal/dispatch/result_placement.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "engine/output_placement.h"
#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/file_names.h"
#include "universal/dispatch/verification.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

/// @return the size in bytes of a regular file that is not empty.
std::uintmax_t requireContent(const fs::path& result) {
  std::error_code error;
  const bool isRegular = fs::is_regular_file(fs::symlink_status(result, error));
  const std::uintmax_t size = isRegular ? fs::file_size(result, error) : 0;
  if (error || size == 0) {
    throw ConversionFailure::message("The output could not be verified.");
  }
  return size;
}

std::string nameOf(const fs::path& result, const fs::path& firstInput) {
  const std::string name = result.filename().string();
  constexpr std::string_view neutral = "result.";
  return name.starts_with(neutral) ? FileNames::stem(firstInput) + name.substr(neutral.size() - 1)
                                   : name;
}

}  // namespace

std::vector<fs::path> placeResults(const std::vector<fs::path>& results,
                                   const fs::path& destination,
                                   const Lasting& lasting,
                                   const std::vector<FileInfo>& inputs,
                                   const JobContext& context) {
  std::vector<fs::path> sources;
  sources.reserve(inputs.size());
  for (const FileInfo& input : inputs) {
    sources.push_back(input.url);
  }
  Placement placement(destination,
                      sources,
                      {"The result could not be saved. Check folder permissions, free space and "
                       "filesystem support.",
                       "Too many filename collisions."});
  std::uintmax_t total = 0;
  for (const fs::path& result : results) {
    context.token.check();
    const fs::path staged = lasting(result);
    total += requireContent(staged);
    if (total > Limits::maxOutputBytes) {
      throw ConversionFailure::message("The output exceeds the 1 GB safety limit.");
    }
    verify(result, context);
    placement.place({staged, nameOf(result, inputs.front().named())});
  }
  return placement.finish();
}

}  // namespace tolvane::UniversalEngine
