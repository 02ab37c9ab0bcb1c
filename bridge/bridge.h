#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bridge/binary_messenger.h"
#include "bridge/event_stream.h"
#include "bridge/job_control.h"
#include "bridge/method_table.h"
#include "bridge/palette_messages.h"
#include "bridge/selection.h"
#include "bridge/settings_messages.h"
#include "desktop/desktop_services.h"
#include "engine/conversion_engine.h"
#include "platform/threads/main_queue.h"
#include "platform/threads/serial_queue.h"
#include "universal/toolchain/local_toolchain.h"

namespace tolvane {

/// The host behind the channel: puts services, engine, worker and the rooms of the contract
/// together. Main thread only; must not be destroyed from within one of its own callbacks. Calls
/// that arrive when it is gone are never answered.
class Bridge {
 public:
  /// Registers the global shortcut.
  /// @param messenger the host's end; not owned; outlives this object.
  /// @param main not owned; outlives this object and runs on this thread.
  /// @param services all present.
  Bridge(BinaryMessenger& messenger,
         MainQueue& main,
         DesktopServices services,
         ConversionEngine engine,
         LocalToolchain toolchain = LocalToolchain());
  /// Asks a running job to stop, or the inspection of files, and waits for it: a file that is being
  /// inspected is finished. The outcome is not reported.
  ~Bridge();
  Bridge(const Bridge&) = delete;
  Bridge& operator=(const Bridge&) = delete;

  using Files = std::vector<std::filesystem::path>;

  /// Takes in files, whatever their source: dropped, chosen, or named by a script. Ignored while a
  /// job runs.
  /// @param message shown until the files are inspected; absent means an invitation to choose some.
  void select(Files urls, const std::optional<std::string>& message = {});

  /// What the palette is opened with.
  enum class Intake { finderSelection, nothing };

  /// Shows the palette: next to the file that is selected in the file manager, or to the pointer.
  /// While a job runs, nothing is taken in.
  /// @param message shown with the files, or instead of them; absent means an invitation to choose
  /// some. A selection that cannot be read is explained in its place.
  void open(Intake intake, const std::optional<std::string>& message = {});
  /// Shows the palette, next to the pointer, with files that were handed over from outside. None:
  /// the palette is empty.
  void open(Files files);

  /// Sends an event; dropped until the interface called "ready".
  void send(std::string_view type, Value::Map payload) const;

  [[nodiscard]] bool hasActiveJob() const { return jobs_->isActive(); }

  /// Asks a running job to stop. There is no limit to the wait for its end.
  /// @param completion called when the job's outcome was sent.
  /// @return false when no job is active: the completion is not used.
  [[nodiscard]] bool prepareToQuit(std::function<void()> completion);

  /// Calls `done` when everything that the worker has to do now is done and its outcome was sent.
  void whenWorkIsDone(std::function<void()> done);

 private:
  Value ready();
  void followDesktop();
  void takeInFinderSelection(const std::optional<std::string>& message);
  /// @param fileFrame what the palette is to appear next to; nullopt means the pointer.
  void takeIn(Files files,
              const std::optional<std::string>& message,
              const std::optional<Rectangle>& fileFrame = {});
  void showPalette() const;

  MainQueue& main_;
  DesktopServices services_;
  const ConversionEngine engine_;
  const LocalToolchain toolchain_;
  EventStream events_;
  SerialQueue worker_{"app.tolvane.conversion"};
  std::shared_ptr<JobControl> jobs_;
  std::shared_ptr<Selection> selection_;
  SettingsMessages settings_;
  std::shared_ptr<PaletteMessages> palette_;
  std::shared_ptr<MethodTable> methods_;
};

}  // namespace tolvane
