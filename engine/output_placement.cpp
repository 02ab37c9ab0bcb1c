#include "engine/output_placement.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "engine/output_names.h"
#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/file_system.h"

namespace tolvane {

namespace fs = std::filesystem;

StagedOutputs::StagedOutputs(fs::path workspace, const CancellationToken& token)
    : workspace_(std::move(workspace)), token_(token) {}

void StagedOutputs::stage(BytesView data, std::string name) {
  token_.check();
  if (data.empty()) {
    throw ConversionFailure::message("The conversion produced an empty file.");
  }
  total_ += static_cast<std::int64_t>(data.size());
  if (total_ > Limits::maxOutputBytes) {
    throw ConversionFailure::message(
        "This job exceeds the 1 GB output safety limit. Process fewer pages or files.");
  }
  const fs::path file = workspace_ / FileSystem::newUuid();
  FileSystem::writeAtomically(file, data, name);
  outputs_.push_back({file, std::move(name)});
}

fs::path prepareDestination(const std::optional<fs::path>& destination,
                            const fs::path& firstInput) {
  fs::path folder = FileSystem::resolved(destination.value_or(firstInput.parent_path()));
  if (!FileSystem::attributes(folder).isDirectory || !FileSystem::isWritable(folder)) {
    throw ConversionFailure::message("The output folder is not writable. Choose another folder.");
  }
  return folder;
}

namespace {

/// @param otherwise what is said of an error that has no sentence of its own.
const char* sentenceFor(int error, const char* otherwise) {
  switch (error) {
    case ENOSPC:
      return "The disk is full. Free some space or choose another output folder.";
    case EDQUOT:
      return "The disk quota is used up. Free some space or choose another output folder.";
    case ESTALE:
    case ENOTCONN:
    case EHOSTDOWN:
      return "The connection to the output folder was lost. Connect again or choose another "
             "folder.";
    default:
      return otherwise;
  }
}

}  // namespace

Placement::Placement(fs::path folder, std::vector<fs::path> sources, PlacementSentences sentences)
    : folder_(std::move(folder)), sources_(std::move(sources)), sentences_(sentences) {}

Placement::~Placement() {
  for (const Placed& placed : placed_) {
    placed.file.removeFrom(placed.result);
  }
}

void Placement::place(const StagedOutput& output) {
  // Room beforehand: a file that is in place must get into the list, or it could not be removed.
  placed_.reserve(placed_.size() + 1);
  placed_.push_back(promote(output));
}

std::vector<fs::path> Placement::finish() {
  std::vector<fs::path> results;
  results.reserve(placed_.size());
  for (Placed& placed : placed_) {
    results.push_back(std::move(placed.result));
  }
  placed_.clear();
  return results;
}

Placement::Placed Placement::promote(const StagedOutput& output) const {
  for (int attempt = 0; attempt < Limits::maxNameAttempts; ++attempt) {
    fs::path candidate = folder_ / OutputNames::candidate(output.name, attempt);
    if (std::find(sources_.begin(), sources_.end(), candidate) != sources_.end()) {
      continue;
    }
    const FilePlacement::Outcome outcome = FilePlacement::place(output.file, candidate);
    if (outcome.file) {
      return {std::move(candidate), *outcome.file};
    }
    if (outcome.error != EEXIST) {
      throw ConversionFailure::message(sentenceFor(outcome.error, sentences_.refused));
    }
  }
  throw ConversionFailure::message(sentences_.collisions);
}

std::vector<fs::path> placeAll(const std::vector<StagedOutput>& outputs,
                               const fs::path& folder,
                               const std::vector<fs::path>& sources,
                               const CancellationToken& token) {
  Placement placement(folder,
                      sources,
                      {"Could not save the result. Check folder permissions and free space.",
                       "Too many output filename collisions. Choose another folder."});
  for (const StagedOutput& output : outputs) {
    token.check();
    placement.place(output);
  }
  return placement.finish();
}

}  // namespace tolvane
