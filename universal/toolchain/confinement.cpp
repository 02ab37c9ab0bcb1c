#include "universal/toolchain/confinement.h"

#include <exception>
#include <unistd.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "platform/process/engine_process.h"
#include "platform/process/process_log.h"
#include "universal/toolchain/own_programs.h"
#include "universal/toolchain/temporary_ground.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr const char* bubblewrap = "/usr/bin/bwrap";

std::string helper() {
  return OwnPrograms::path("tolvane-confine").string();
}

void append(Words& words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
}

Words supervised() {
  return {helper(), "--supervise", std::to_string(::getpid())};
}

Words placesOf(const ConfinedEngine& engine) {
  Words words = {"--folder", engine.folder.string(), "--root", engine.root.string()};
  if (!engine.sockets.empty()) {
    append(words, {"--sockets", engine.sockets.string()});
  }
  for (const fs::path& place : engine.readable) {
    append(words, {"--read", place.string()});
  }
  if (engine.memory > 0) {
    append(words, {"--memory", std::to_string(engine.memory)});
  }
  if (engine.fileSize > 0) {
    append(words, {"--file-size", std::to_string(engine.fileSize)});
  }
  return words;
}

/// The whole system read-only, with devices of its own and the engine's places writable.
Words bubblewrapped(const ConfinedEngine& engine) {
  const std::string root = engine.root.string();
  Words words = {bubblewrap, "--die-with-parent", "--ro-bind", "/", "/", "--dev", "/dev"};
  append(words, {"--bind-try", root, root});
  if (!engine.sockets.empty()) {
    append(words, {"--bind", engine.sockets.string(), engine.sockets.string()});
  }
  if (!engine.cover.empty()) {
    append(words, {"--bind", engine.sockets.string(), engine.cover.string()});
  }
  append(words, {"--", helper()});
  return words;
}

/// A folder for the trial, with a part that may be written and a file that may not.
class TrialGround {
 public:
  TrialGround() {
    FileSystem::createDirectory(inside(), FileSystem::ownerOnly);
    FileSystem::writeAtomically(outside(), {});
  }

  [[nodiscard]] fs::path inside() const { return folder_.path() / "inside"; }
  [[nodiscard]] fs::path outside() const { return folder_.path() / "outside"; }

 private:
  TemporaryGround folder_{"tolvane-trial"};
};

/// What went wrong, to stand inside a sentence.
std::string withoutStop(std::string text) {
  if (text.ends_with('.')) {
    text.pop_back();
  }
  return text;
}

/// @return what went wrong; empty when the confinement held.
std::string tryOut(const Confinement& confinement, const TrialGround& ground) try {
  // Its devices are the system's own, writable, and root owns them. What it can do for root, root
  // can do without it.
  if (confinement.level() == ConfinementLevel::bubblewrap && ::geteuid() == 0) {
    return "bubblewrap is not for root";
  }
  const fs::path inside = FileSystem::resolved(ground.inside());
  const ProcessLog log(inside);
  const ConfinedEngine trial = {helper(),
                                {"--trial", inside.string(), ground.outside().string()},
                                inside,
                                inside,
                                {},
                                {},
                                {helper()}};
  EngineProcess process({confinement.command(trial), {}, log.descriptor()});
  const int status = process.exitStatus();
  const Bytes said = log.content();
  if (status == 0) {
    return {};
  }
  return said.empty() ? "exit " + std::to_string(status) : std::string(said.begin(), said.end());
} catch (const std::exception& error) {
  return withoutStop(error.what());
}

}  // namespace

const Confinement& Confinement::ofThisMachine() {
  static const Confinement found = firstThatHolds(
      {ConfinementLevel::ownMounts, ConfinementLevel::bubblewrap, ConfinementLevel::withoutMounts});
  return found;
}

Confinement Confinement::firstThatHolds(const std::vector<ConfinementLevel>& levels,
                                        std::optional<int> newestPathRules) try {
  std::string obstacle;
  for (const ConfinementLevel level : levels) {
    Confinement candidate(level, newestPathRules);
    const std::string trouble = tryOut(candidate, TrialGround());
    if (trouble.empty()) {
      candidate.obstacle_ = obstacle;
      return candidate;
    }
    if (obstacle.empty()) {
      obstacle = trouble;
    }
  }
  Confinement none(std::nullopt, newestPathRules);
  none.obstacle_ = "this system cannot confine them (" + obstacle +
                   "). Use a kernel with Landlock and allow user namespaces.";
  return none;
} catch (const PlatformError& error) {
  Confinement untried(std::nullopt, newestPathRules);
  untried.obstacle_ = "there is no folder in which their confinement could be tried out (" +
                      withoutStop(error.what()) + "). Make /tmp writable.";
  return untried;
}

std::string Confinement::description() const {
  if (!level_) {
    return "Local engines are not run, because " + obstacle_;
  }
  switch (*level_) {
    case ConfinementLevel::ownMounts:
      return "Engines run confined by mounts of their own, Landlock and a system-call filter: they "
             "read the "
             "files of their job and the system's own, and have no network.";
    case ConfinementLevel::bubblewrap:
      return "Engines run confined by bubblewrap, Landlock and a system-call filter, because "
             "mounts of their own are not allowed here (" +
             obstacle_ + ").";
    case ConfinementLevel::withoutMounts:
      break;
  }
  return "Engines run confined by Landlock and a system-call filter and cannot set permissions or "
         "times, nor can the office suite run, because mounts of their own are not allowed here (" +
         obstacle_ + ").";
}

Words Confinement::command(const ConfinedEngine& engine) const {
  if (!level_) {
    throw ConversionFailure::message(description());
  }
  Words words = supervised();
  if (level_ == ConfinementLevel::bubblewrap) {
    append(words, {"--delegate", "--"});
    append(words, bubblewrapped(engine));
  }
  append(words, placesOf(engine));
  if (level_ == ConfinementLevel::ownMounts) {
    append(words, {"--own-mounts"});
    if (!engine.cover.empty()) {
      append(words, {"--cover", engine.cover.string()});
    }
  }
  if (level_ == ConfinementLevel::withoutMounts) {
    append(words, {"--refuse-metadata"});
  }
  if (newestPathRules_) {
    append(words, {"--path-rules-at-most", std::to_string(*newestPathRules_)});
  }
  append(words, {"--", engine.program.string()});
  append(words, engine.arguments);
  return words;
}

}  // namespace tolvane
