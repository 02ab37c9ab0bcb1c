#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "engine/conversion_engine.h"
#include "engine/job_workspace.h"
#include "engine/primitives/cancellation_token.h"
#include "engine/primitives/value.h"
#include "platform/files/bytes.h"
#include "universal/toolchain/local_toolchain.h"

namespace tolvane {

/// What the operations of one universal job work with. Everything it refers to outlives it.
struct JobContext {
  const ConversionEngine& base;
  const LocalToolchain& toolchain;
  const CancellationToken& token;
  /// Where results and intermediate files are written: the current directory of every engine and
  /// the tree in which it may write. Goes with the job.
  std::filesystem::path workspace;
  /// What holds that folder or one around it; null where nobody could replace it.
  const JobWorkspace* holder = nullptr;

  /// The same job in another workspace.
  [[nodiscard]] JobContext in(std::filesystem::path folder) const;

  /// Engines are told of the workspace by its path, which in a folder that others may change can
  /// come to mean another one.
  /// @throws ConversionFailure when it does.
  void requireWorkspaceInPlace() const;

  /// Runs an engine when the workspace is in its place.
  /// @return what it printed. @throws as LocalToolchain::run
  Bytes run(const EngineRun& order) const;

  /// Runs an engine that must end with status 0.
  /// @param timeout seconds.
  /// @param inputs what it reads outside the workspace.
  /// @return what it printed. @throws as LocalToolchain::run
  Bytes run(std::string engine,
            std::vector<std::string> arguments,
            double timeout,
            std::vector<std::filesystem::path> inputs = {}) const;

  /// Runs a native action into the workspace.
  /// @return its results. @throws ConversionFailure, PlatformError
  [[nodiscard]] std::vector<std::filesystem::path> native(std::string action,
                                                          std::vector<std::filesystem::path> inputs,
                                                          Value::Map options) const;

  /// A fresh name in the workspace: `prefix` + UUID + `suffix`.
  [[nodiscard]] std::filesystem::path freshFile(const std::string& prefix,
                                                const std::string& suffix) const;
};

}  // namespace tolvane
