#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "engine/primitives/cancellation_token.h"
#include "platform/files/bytes.h"
#include "platform/files/file_placement.h"

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

/// What a failed placement says.
struct PlacementSentences {
  const char* refused;     ///< the folder does not take the file
  const char* collisions;  ///< every name that could be tried is taken
};

/// Puts the results of one job into the user's folder, all or none: what was placed is removed
/// again unless finish() is reached, or the user has put something else in its place. Goes before
/// the workspace.
class Placement {
 public:
  /// @param folder as prepareDestination() gives it; on the file system of the staged files.
  /// @param sources the job's inputs, whose names are never taken.
  Placement(std::filesystem::path folder,
            std::vector<std::filesystem::path> sources,
            PlacementSentences sentences);
  ~Placement();
  Placement(const Placement&) = delete;
  Placement& operator=(const Placement&) = delete;

  /// Gives a file its final name, the first free candidate, as FilePlacement::place does.
  /// @throws ConversionFailure
  void place(const StagedOutput& output);

  /// @return what was placed, in order; it stays.
  [[nodiscard]] std::vector<std::filesystem::path> finish();

 private:
  struct Placed {
    std::filesystem::path result;
    FilePlacement::PlacedFile file;
  };

  [[nodiscard]] Placed promote(const StagedOutput& output) const;

  std::filesystem::path folder_;
  std::vector<std::filesystem::path> sources_;
  PlacementSentences sentences_;
  std::vector<Placed> placed_;
};

/// Places every output of a native job, in order, unless the job is cancelled meanwhile.
/// @throws ConversionFailure
[[nodiscard]] std::vector<std::filesystem::path> placeAll(
    const std::vector<StagedOutput>& outputs,
    const std::filesystem::path& folder,
    const std::vector<std::filesystem::path>& sources,
    const CancellationToken& token);

}  // namespace tolvane
