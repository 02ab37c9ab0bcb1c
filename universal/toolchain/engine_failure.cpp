#include "universal/toolchain/engine_failure.h"

#include <algorithm>
#include <csignal>
#include <string_view>
#include <system_error>

#include "engine/primitives/conversion_failure.h"

namespace tolvane::EngineFailure {

namespace {

namespace fs = std::filesystem;

constexpr int signalled = 128;  // added to the number of a signal, as shells do

/// How engines say that an allocation was refused.
constexpr std::string_view wordsForMemory[] = {"out of memory",
                                               "Out of memory",
                                               "annot allocate memory",
                                               "an't allocate required memory",
                                               "Unable to commit",
                                               "eap exhausted",
                                               "emory allocation failed",
                                               "emory exhausted",
                                               "malloc of size",
                                               "bad_alloc"};

bool says(std::string_view printed, std::string_view words) {
  return printed.find(words) != std::string_view::npos;
}

/// An engine that asks for one large piece never comes near the limit, but says so; one that grows
/// in small pieces comes near, and may say nothing.
bool neededMemory(const Run& run) {
  constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;
  const std::uint64_t limit = static_cast<std::uint64_t>(run.limits.memory) * mebibyte;
  return run.peakMemory > limit - limit / 8 ||
         std::ranges::any_of(wordsForMemory, [&run](std::string_view words) {
           return says(asText(run.printed), words);
         });
}

/// @param memory in MiB.
std::string inGigabytes(int memory) {
  constexpr int gigabyte = 1024;
  return memory < gigabyte ? std::to_string(memory) + " MB"
                           : std::to_string((memory + gigabyte / 2) / gigabyte) + " GB";
}

}  // namespace

void tooMuchOutput() {
  throw ConversionFailure::message("The output exceeds the 1 GB safety limit.");
}

void fullDisk() {
  throw ConversionFailure::message(
      "The disk is full. Free some space or choose another output folder.");
}

bool isFull(const fs::path& folder) {
  std::error_code error;
  const fs::space_info space = fs::space(folder, error);
  return !error && space.available == 0;
}

void explain(const Run& run) {
  const std::string_view printed = asText(run.printed);
  if (says(printed, "Disk quota exceeded")) {
    throw ConversionFailure::message(
        "The disk quota is used up. Free some space or choose another output folder.");
  }
  if (isFull(run.folder) || says(printed, "No space left on device")) {
    fullDisk();
  }
  if (run.status == signalled + SIGXFSZ || says(printed, "File too large")) {
    tooMuchOutput();
  }
  if (run.known) {
    throw ConversionFailure::message(*run.known);
  }
  if (neededMemory(run)) {
    throw ConversionFailure::message(run.engine + " needs more than " +
                                     inGigabytes(run.limits.memory) +
                                     " of memory for this file. Try a smaller or simpler one.");
  }
  throw ConversionFailure::message(
      run.engine + " could not process this file (exit " + std::to_string(run.status) +
      "). Check that the file is valid and the selected options fit its content.");
}

}  // namespace tolvane::EngineFailure
