#pragma once

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/stop_watch.h"
#include "tests/support/temporary_folder.h"
#include "universal/toolchain/local_toolchain.h"

namespace tolvane::support {

/// Engines that are shell scripts, and a workspace in which they run.
class ToolchainFixture : public ::testing::Test {
 public:
  ToolchainFixture() : toolchain_(EngineLocations{{folder_ / "bin"}}) {
    std::filesystem::create_directory(folder_ / "bin");
    std::filesystem::create_directory(workspace());
  }

  [[nodiscard]] std::filesystem::path workspace() const { return folder_ / "work"; }

  /// Makes an engine and the order to run it for at most a minute.
  [[nodiscard]] EngineRun engine(const std::string& name, const std::string& script) const {
    const auto file =
        folder_.write("bin/" + name, script.starts_with("#!") ? script : "#!/bin/sh\n" + script);
    std::filesystem::permissions(file, std::filesystem::perms(0755));
    return {name, {}, workspace(), 60};
  }

  std::string run(const EngineRun& order) const {
    return std::string(asText(toolchain_.run(order, token_)));
  }

  /// What is left of a run besides what the engine itself wrote.
  [[nodiscard]] std::vector<std::string> leftInWorkspace() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(workspace())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  [[nodiscard]] static bool isAlive(const std::string& process) {
    // What has ended stays in the list until whoever inherited it has asked for its status.
    const std::string status = contentOf("/proc/" + process + "/status");
    return !status.empty() && status.find("\nState:\tZ") == std::string::npos &&
           status.find("\nState:\tX") == std::string::npos;
  }

 protected:
  TemporaryFolder folder_;
  LocalToolchain toolchain_;
  CancellationToken token_;
};

}  // namespace tolvane::support
