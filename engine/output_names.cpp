#include "engine/output_names.h"

#include <fmt/format.h>

#include "platform/files/file_names.h"

namespace tolvane::OutputNames {

std::string candidate(std::string_view name, int attempt) {
  const std::string suffix = attempt == 0 ? "" : fmt::format("-converted-{}", attempt + 1);
  return fmt::format("{}{}.{}", FileNames::stem(name), suffix, FileNames::extension(name));
}

}  // namespace tolvane::OutputNames
