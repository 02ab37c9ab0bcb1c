#include "universal/job/job_context.h"

#include <utility>

#include "platform/files/file_system.h"

namespace tolvane {

namespace fs = std::filesystem;

JobContext JobContext::in(fs::path folder) const {
  return {base, toolchain, token, std::move(folder), holder};
}

void JobContext::requireWorkspaceInPlace() const {
  if (holder != nullptr) {
    holder->requireInPlace();
  }
}

Bytes JobContext::run(const EngineRun& order) const {
  requireWorkspaceInPlace();
  return toolchain.run(order, token);
}

Bytes JobContext::run(std::string engine,
                      std::vector<std::string> arguments,
                      double timeout,
                      std::vector<fs::path> inputs) const {
  return run({.name = std::move(engine),
              .arguments = std::move(arguments),
              .in = workspace,
              .timeout = timeout,
              .inputs = std::move(inputs)});
}

std::vector<fs::path> JobContext::native(std::string action,
                                         std::vector<fs::path> inputs,
                                         Value::Map options) const {
  return base.run({std::move(action), std::move(inputs), workspace, std::move(options), token, {}});
}

fs::path JobContext::freshFile(const std::string& prefix, const std::string& suffix) const {
  return workspace / (prefix + FileSystem::newUuid() + suffix);
}

}  // namespace tolvane
