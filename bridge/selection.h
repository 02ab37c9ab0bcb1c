#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bridge/event_stream.h"
#include "engine/conversion_engine.h"
#include "engine/primitives/cancellation_token.h"
#include "engine/primitives/value.h"
#include "platform/threads/main_queue.h"
#include "platform/threads/serial_queue.h"
#include "universal/toolchain/local_toolchain.h"

namespace tolvane {

/// The files that actions are offered for, and the offers. Files are inspected on the worker; what
/// comes back after a newer intake has begun, or when this object is gone, is dropped, and files
/// whose turn has not come by then are left alone. Main thread only.
class Selection : public std::enable_shared_from_this<Selection> {
 public:
  /// What a selection works with. Nothing is owned; all outlive it, and the engine what the worker
  /// still runs.
  struct Surroundings {
    const ConversionEngine& engine;
    const LocalToolchain& toolchain;
    SerialQueue& worker;
    MainQueue& main;
    const EventStream& events;
  };

  explicit Selection(const Surroundings& surroundings) : surroundings_(surroundings) {}
  ~Selection() { intake_.inspection->cancel(); }
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;

  /// Replaces the selection: publishes an empty one, then, when the files are inspected, the new
  /// one. More than 100 files are refused as a whole.
  /// @param message shown until then; absent means an invitation to choose files.
  void select(std::vector<std::filesystem::path> urls, const std::optional<std::string>& message);

  /// "files", "message", "formats" and "tools", as "ready" and "selectionResolved" carry them.
  [[nodiscard]] Value::Map state() const;

 private:
  struct Intake {
    std::int64_t selectionRevision = 0;
    std::shared_ptr<CancellationToken> inspection = std::make_shared<CancellationToken>();
  };
  struct Inspection {
    std::vector<FileInfo> files;
    int failures = 0;
    std::string firstFailure;
  };

  void inspectInTheBackground(const Intake& intake, std::vector<std::filesystem::path> urls);
  /// On the worker. The token is checked before each file.
  static Inspection inspect(const ConversionEngine& engine,
                            const std::vector<std::filesystem::path>& urls,
                            const CancellationToken& token);
  void apply(std::int64_t revision, const Inspection& inspection);
  void publish() const;

  Surroundings surroundings_;
  Intake intake_;        // the latest accepted one
  Value::List files_;    // file entries
  Value::List formats_;  // conversion offers
  Value::List tools_;    // tool offers
  std::string selectionMessage_ = "Select a file in Finder and use the shortcut, or drop it here.";
};

}  // namespace tolvane
