#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "engine/primitives/cancellation_token.h"
#include "platform/files/bytes.h"

/// How results get from the workspace into the user's folder: checked, under free names, all or
/// none.
namespace tolvane {

/// A file in the workspace and the name that the user is to see.
struct StagedOutput {
  std::filesystem::path file;
  std::string name;
};

/// The results of one job so far, in the order of their production.
class StagedOutputs {
 public:
  /// @param workspace a folder that outlives this object.
  /// @param token not owned; outlives this object.
  StagedOutputs(std::filesystem::path workspace, const CancellationToken& token);

  /// Writes one result into the workspace.
  /// @throws ConversionFailure when the job is cancelled, `data` is empty, or the job's results
  ///   exceed 1 GB; PlatformError, which calls the file by `name`, when it cannot be written.
  void stage(BytesView data, std::string name);

  [[nodiscard]] const std::vector<StagedOutput>& outputs() const { return outputs_; }

 private:
  std::filesystem::path workspace_;
  const CancellationToken& token_;
  std::vector<StagedOutput> outputs_;
  std::int64_t total_ = 0;  // bytes
};

/// @param destination absent: the folder of `firstInput`.
/// @return the folder, symbolic links resolved.
/// @throws ConversionFailure when it is no writable folder; PlatformError when it cannot be read.
[[nodiscard]] std::filesystem::path prepareDestination(
    const std::optional<std::filesystem::path>& destination,
    const std::filesystem::path& firstInput);

/// Gives one staged file its final name by a hard link under the first free candidate; never
/// replaces an entry and never takes the name of one of the job's inputs (`sources`).
/// @throws ConversionFailure
[[nodiscard]] std::filesystem::path promote(const StagedOutput& output,
                                            const std::filesystem::path& folder,
                                            const std::vector<std::filesystem::path>& sources);

/// Places every output, in order. When one cannot be placed, or the job is cancelled, those placed
/// before are removed again.
[[nodiscard]] std::vector<std::filesystem::path> placeAll(
    const std::vector<StagedOutput>& outputs,
    const std::filesystem::path& folder,
    const std::vector<std::filesystem::path>& sources,
    const CancellationToken& token);

}  // namespace tolvane
