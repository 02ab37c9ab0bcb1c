#include "universal/dispatch/universal_engine.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "catalog/capability_catalog.h"
#include "engine/job_workspace.h"
#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "universal/combined/combined.h"
#include "universal/dispatch/conversion.h"
#include "universal/dispatch/result_placement.h"
#include "universal/job/job_context.h"
#include "universal/tools/tool.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view conversionPrefix = "convert.";
constexpr std::string_view toolPrefix = "tool.";

/// @return the id of the chosen offer.
const std::string& admit(const Job& job) {
  const std::string* id = valueAt(job.options, "capabilityID").text();
  if (job.inputs.empty() || job.inputs.size() > Limits::maxInputFiles || id == nullptr) {
    throw ConversionFailure::message("Choose a conversion or tool first.");
  }
  return *id;
}

std::vector<FileInfo> inspectAll(const ConversionEngine& base, const Job& job) {
  std::vector<FileInfo> files;
  files.reserve(job.inputs.size());
  for (const fs::path& input : job.inputs) {
    files.push_back(base.inspect(input));
  }
  return files;
}

/// The offer with this id, which must be there and need nothing more.
FileCapability requireOffer(const std::string& id,
                            const std::vector<FileInfo>& files,
                            const LocalToolchain& toolchain) {
  std::vector<FileCapability> offers = CapabilityCatalog::formats(files, toolchain);
  const std::vector<FileCapability> tools = CapabilityCatalog::tools(files, toolchain);
  offers.insert(offers.end(), tools.begin(), tools.end());
  const auto found = std::find_if(
      offers.begin(), offers.end(), [&](const FileCapability& offer) { return offer.id == id; });
  if (found == offers.end()) {
    throw ConversionFailure::message("This operation is not applicable to the current selection.");
  }
  if (found->requirement) {
    throw ConversionFailure::message(*found->requirement);
  }
  return *found;
}

bool isWritableFolder(const fs::path& folder) {
  std::error_code error;
  return fs::is_directory(folder, error) && FileSystem::isWritable(folder);
}

fs::path requireDestination(const Job& job, const FileInfo& first) {
  fs::path folder = FileSystem::resolved(job.destination.value_or(first.url.parent_path()));
  if (!isWritableFolder(folder)) {
    throw ConversionFailure::message("Choose a writable output folder.");
  }
  return folder;
}

std::vector<fs::path> produceOne(const std::string& id,
                                 const FileInfo& file,
                                 const Value::Map& options,
                                 const JobContext& context) {
  const std::string_view chosen = id;
  if (chosen.starts_with(conversionPrefix)) {
    return convert(file, chosen.substr(conversionPrefix.size()), options, context);
  }
  return tool(file, chosen.substr(toolPrefix.size()), options, context);
}

std::vector<fs::path> produceEach(const std::string& id,
                                  const std::vector<FileInfo>& files,
                                  const Job& job,
                                  const JobContext& context) {
  constexpr unsigned ordinaryFolder = 0755;
  const int total = static_cast<int>(files.size());
  std::vector<fs::path> results;
  for (int index = 0; index < total; ++index) {
    job.token.check();
    context.requireWorkspaceInPlace();
    const fs::path folder = context.workspace / ("item-" + std::to_string(index));
    FileSystem::createDirectory(folder, ordinaryFolder);
    const auto produced =
        produceOne(id, files[static_cast<std::size_t>(index)], job.options, context.in(folder));
    results.insert(results.end(), produced.begin(), produced.end());
    job.report(index + 1, total);
  }
  return results;
}

std::vector<fs::path> produceTogether(const std::string& id,
                                      const std::vector<FileInfo>& files,
                                      const Job& job,
                                      const JobContext& context) {
  const int total = static_cast<int>(files.size());
  auto results =
      combined(files, std::string_view(id).substr(toolPrefix.size()), job.options, context);
  job.report(total, total);
  return results;
}

std::vector<fs::path> produce(const FileCapability& offer,
                              const std::vector<FileInfo>& files,
                              const Job& job,
                              const JobContext& context) {
  auto results = offer.combined ? produceTogether(offer.id, files, job, context)
                                : produceEach(offer.id, files, job, context);
  if (results.empty()) {
    throw ConversionFailure::message("The engine produced no output.");
  }
  return results;
}

/// The user does not know the workspace, and when he reads of it, it is gone.
std::string withoutFolder(std::string text, const fs::path& folder) {
  const std::string path = folder.string() + "/";
  for (std::size_t at = 0; (at = text.find(path, at)) != std::string::npos;) {
    text.erase(at, path.size());
  }
  return text;
}

}  // namespace

std::vector<fs::path> run(const ConversionEngine& base,
                          const LocalToolchain& toolchain,
                          const Job& job) {
  const std::string& id = admit(job);
  const std::vector<FileInfo> files = inspectAll(base, job);
  const FileCapability offer = requireOffer(id, files, toolchain);
  const fs::path destination = requireDestination(job, files.front());
  const JobWorkspace workspace(destination);
  const JobContext context = {base, toolchain, job.token, workspace.path(), &workspace};
  try {
    const auto results = produce(offer, files, job, context);
    return placeResults(
        results,
        destination,
        [&](const fs::path& result) { return workspace.lasting(result); },
        files,
        context);
  } catch (const PlatformError& error) {
    throw PlatformError(withoutFolder(error.what(), workspace.path()));
  }
}

ConversionEngine completeEngine(LocalToolchain toolchain) {
  return ConversionEngine(
      [toolchain = std::move(toolchain)](const ConversionEngine& base, const Job& job) {
        return run(base, toolchain, job);
      });
}

}  // namespace tolvane::UniversalEngine
