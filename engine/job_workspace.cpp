#include "engine/job_workspace.h"

#include "engine/primitives/conversion_failure.h"

namespace tolvane {

namespace fs = std::filesystem;

JobWorkspace::JobWorkspace(const fs::path& destination) : folder_(destination, ".tolvane-") {}

void JobWorkspace::requireInPlace() const {
  if (!folder_.held().isInPlace()) {
    throw ConversionFailure::message(
        "The working folder of this job was moved or replaced while it ran. Nothing was saved. "
        "Choose an output folder that only you can change.");
  }
}

fs::path JobWorkspace::lasting(const fs::path& inside) const {
  requireInPlace();
  return lastingPath() / inside.lexically_relative(path());
}

}  // namespace tolvane
