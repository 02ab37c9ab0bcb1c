#include "universal/documents/pandoc_sandbox.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <tuple>

#include "platform/files/file_system.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeout = 120;  // seconds
constexpr std::int32_t partNotFound = 97;

/// The executable, when it was installed, and the writer.
using Trial = std::tuple<fs::path, fs::file_time_type, std::string>;

/// The outcomes of the trials so far.
class Trials {
 public:
  std::optional<bool> outcome(const Trial& trial) {
    const std::lock_guard guard(lock_);
    const auto found = outcomes_.find(trial);
    return found != outcomes_.end() ? std::optional(found->second) : std::nullopt;
  }
  void remember(const Trial& trial, bool outcome) {
    const std::lock_guard guard(lock_);
    outcomes_[trial] = outcome;
  }

 private:
  std::mutex lock_;
  std::map<Trial, bool> outcomes_;
};

Trials& trials() {
  static Trials found;
  return found;
}

Trial trialOf(const JobContext& context, std::string_view writer) {
  std::error_code ignored;
  const fs::path pandoc = context.toolchain.find("pandoc").value_or(fs::path());
  return {pandoc, fs::last_write_time(pandoc, ignored), std::string(writer)};
}

bool isEmptyWritten(const JobContext& context, std::string_view writer) {
  const fs::path empty = context.freshFile("empty-", ".md");
  const fs::path result = context.freshFile("empty-", ".out");
  FileSystem::writeAtomically(empty, {});
  context.run({.name = "pandoc",
               .arguments = {"--sandbox",
                             "--from=markdown",
                             "--to=" + std::string(writer),
                             empty.string(),
                             "-o",
                             result.string()},
               .in = context.workspace,
               .timeout = timeout,
               .accepted = {0, partNotFound}});
  std::error_code ignored;
  const bool isWritten = fs::exists(result, ignored);
  FileSystem::removeQuietly(empty);
  FileSystem::removeQuietly(result);
  return isWritten;
}

}  // namespace

bool canWriteInSandbox(const JobContext& context, std::string_view writer) {
  const Trial trial = trialOf(context, writer);
  if (const auto known = trials().outcome(trial)) {
    return *known;
  }
  const bool outcome = isEmptyWritten(context, writer);
  trials().remember(trial, outcome);
  return outcome;
}

}  // namespace tolvane::UniversalEngine
