#include "universal/images/engine_path.h"

#include <string_view>
#include <system_error>

#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

bool isPlain(std::string_view name) {
  return name.find_first_of("%[]{}*?:@~\\") == std::string_view::npos;
}

/// With the extension, by which the formats without a signature are known.
fs::path linkTo(const fs::path& file, const JobContext& context) {
  const std::string extension = FileNames::extension(file);
  const bool isKept = !extension.empty() && isPlain(extension);
  fs::path link = context.freshFile("input-", isKept ? "." + extension : "");
  std::error_code problem;
  fs::create_symlink(file, link, problem);
  if (problem) {
    throw PlatformError::fromErrno("link to", file, problem.value());
  }
  return link;
}

}  // namespace

std::string enginePath(const fs::path& file, const JobContext& context) {
  if (isPlain(file.native())) {
    return file.string();
  }
  const fs::path inWorkspace = file.lexically_relative(context.workspace);
  const bool isInside = !inWorkspace.empty() && *inWorkspace.begin() != "..";
  const fs::path relative =
      isInside && isPlain(inWorkspace.native()) ? inWorkspace : linkTo(file, context).filename();
  return "./" + relative.string();
}

}  // namespace tolvane::UniversalEngine
