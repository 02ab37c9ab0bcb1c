#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/primitives/cancellation_token.h"
#include "platform/files/bytes.h"
#include "universal/toolchain/confinement.h"
#include "universal/toolchain/engine_limits.h"
#include "universal/toolchain/engine_locations.h"

namespace tolvane {

/// One run of an outside engine.
struct EngineRun {
  std::string name;                    ///< as find() takes it; also named in messages
  std::vector<std::string> arguments;  ///< passed on unchanged: no shell, no quoting
  std::filesystem::path in;            ///< the job's workspace: holds the log and scratch files
  double timeout = 0;                  ///< seconds from the launch on
  /// The files, and folders with all that is below them, that it may read besides `in`, the
  /// writable tree and what belongs to the engine itself. Everything else of the user's stays
  /// closed.
  std::vector<std::filesystem::path> inputs = {};
  std::map<std::string, std::string> environment = {};  ///< overrides the few inherited ones
  std::set<std::int32_t> accepted = {0};                ///< exit statuses that count as success
  /// The tree in which the engine may write; absent means `in`.
  std::optional<std::filesystem::path> writableRoot = std::nullopt;
  /// The engine's current directory; absent means `in`.
  std::optional<std::filesystem::path> currentDirectory = std::nullopt;
  /// Called about every 40 ms while the engine runs, in the place of the look at how much it has
  /// written; may be empty. What it throws ends the engine at once and is passed on.
  std::function<void()> whileRunning = {};
  /// Turns what a failed engine printed into a sentence for the user; may be empty. Where it knows
  /// none, the engine and its exit status are named.
  std::function<std::optional<std::string>(std::string_view printed)> explain = {};
  std::optional<EngineLimits> limits = std::nullopt;  ///< absent: those of the engine
};

/// The one place where outside engines (ffmpeg, qpdf, magick, soffice, ...) are found and run.
/// Holds no state between calls; any thread.
class LocalToolchain {
 public:
  /// @param confinement not owned, outlives this object; null means that of this machine, found out
  /// at the first run.
  explicit LocalToolchain(EngineLocations locations = EngineLocations::standard(),
                          const Confinement* confinement = nullptr)
      : locations_(std::move(locations)), confinement_(confinement) {}

  /// @param engine its name as messages show it, such as "ffmpeg".
  /// @return the first candidate that is an executable file; nullopt when the engine is not
  /// installed.
  [[nodiscard]] std::optional<std::filesystem::path> find(std::string_view engine) const;

  /// Whether find() answers with a program of ours that stands in for the engine.
  [[nodiscard]] bool usesAdapter(std::string_view engine) const;

  /// Runs an engine confined and waits for its end; when this returns or throws, no process of it
  /// is left. What it wrote stays where it is.
  /// @return everything that it printed, on both outputs, in the order in which it was written.
  /// @throws ConversionFailure when it is not installed, too slow, too talkative, cancelled, ends
  /// with a status that is not accepted, or cannot be confined.
  /// @throws PlatformError when the log or a folder cannot be made or read or the launch fails.
  Bytes run(const EngineRun& run, const CancellationToken& token) const;

 private:
  [[nodiscard]] const Confinement& confinement() const;

  EngineLocations locations_;
  const Confinement* confinement_;
};

}  // namespace tolvane
