#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/desktop/accessibility/atspi_file_manager_selection.h"
#include "platform/desktop/front_application.h"
#include "tests/platform/accessibility/recorded_window.h"
#include "tests/support/temporary_folder.h"

namespace {

namespace fs = std::filesystem;
using tolvane::AtspiFileManagerSelection;
using tolvane::fileManagerBundle;
using tolvane::ShownFile;
using tolvane::WindowPlace;
using tolvane::support::RecordedWindow;
using tolvane::support::TemporaryFolder;

/// A file manager that answers at once: what is left is the search, and the looking up of recorded
/// answers.
void findSelection(benchmark::State& state, const std::string& tree) {
  ::setenv("TMPDIR", "/tmp", 1);  // NOLINT(concurrency-mt-unsafe): the recorded folder
  const TemporaryFolder home;
  fs::create_directories(home / "files/Folder");
  for (const char* file : {"files/doc1.txt", "files/doc2.txt", "a1.txt"}) {
    home.write(file, "x");
  }
  AtspiFileManagerSelection selection(
      std::make_shared<RecordedWindow>(tree, home.path()),
      [](std::uint64_t) {
        return WindowPlace{{100, 50}, "files", "/window/1"};
      },
      home.path(),
      std::make_shared<std::optional<ShownFile>>(),
      std::chrono::minutes(1));
  for (auto _ : state) {
    const auto items = selection.items({fileManagerBundle, RecordedWindow::process, 1, false});
    if (items.empty()) {
      state.SkipWithError("nothing found");
      break;
    }
  }
}
BENCHMARK_CAPTURE(findSelection, nautilusIcons, "nautilus_icons");
BENCHMARK_CAPTURE(findSelection, nautilusList, "nautilus_list");
BENCHMARK_CAPTURE(findSelection, dolphin, "dolphin");
BENCHMARK_CAPTURE(findSelection, pcmanfmQt, "pcmanfm_qt");
BENCHMARK_CAPTURE(findSelection, nemo, "nemo_icons");
BENCHMARK_CAPTURE(findSelection, thunar, "thunar_list");
BENCHMARK_CAPTURE(findSelection, pcmanfm, "pcmanfm");

}  // namespace
