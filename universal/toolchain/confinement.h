#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tolvane {

/// The ways to confine an engine, the best first. Each gives the same: no network, nothing outside
/// the engine's own places can be changed, and no file can be read that is not named to it.
enum class ConfinementLevel {
  ownMounts,      ///< read-only mounts of its own, path rules (Landlock), system-call filter
  bubblewrap,     ///< bubblewrap makes the mounts, where only that program may
  withoutMounts,  ///< path rules and a filter that refuses every change of permissions and times
};

/// One engine as it is to run.
struct ConfinedEngine {
  std::filesystem::path program;
  std::vector<std::string> arguments;
  std::filesystem::path folder;   ///< its working directory; absolute
  std::filesystem::path root;     ///< the tree that it may write; absolute, links resolved
  std::filesystem::path sockets;  ///< may hold sockets and be written; empty for none
  std::filesystem::path
      cover;  ///< an existing folder in whose place `sockets` is seen; may be empty
  /// What it may read besides its own places: files, and folders with all that is below them. Those
  /// that do not exist are passed over.
  std::vector<std::filesystem::path> readable = {};
  int memory = 0;    ///< MiB that each of its processes may have of its own; 0: no limit
  int fileSize = 0;  ///< MiB of one file; 0: no limit
};

/// How engines are confined on this machine. Immutable.
class Confinement {
 public:
  /// Found out at the first call, which takes a few milliseconds. Any thread.
  [[nodiscard]] static const Confinement& ofThisMachine();

  /// Takes the first of `levels` that passes a real trial here: a write, a reading, a change of
  /// permissions and a socket outside must all be refused.
  /// @param newestPathRules behave as on a kernel whose Landlock is of that version.
  [[nodiscard]] static Confinement firstThatHolds(
      const std::vector<ConfinementLevel>& levels,
      std::optional<int> newestPathRules = std::nullopt);

  /// nullopt: nothing holds here, and no engine is run.
  [[nodiscard]] std::optional<ConfinementLevel> level() const { return level_; }
  /// One sentence for people: how engines are confined, or why they cannot be.
  [[nodiscard]] std::string description() const;

  /// The command line that runs an engine confined.
  /// @throws ConversionFailure when no level holds.
  [[nodiscard]] std::vector<std::string> command(const ConfinedEngine& engine) const;

 private:
  Confinement(std::optional<ConfinementLevel> level, std::optional<int> newestPathRules)
      : level_(level), newestPathRules_(newestPathRules) {}

  std::optional<ConfinementLevel> level_;
  std::optional<int> newestPathRules_;
  // What the best level that failed said; where none holds, a reason and a remedy.
  std::string obstacle_;
};

}  // namespace tolvane
