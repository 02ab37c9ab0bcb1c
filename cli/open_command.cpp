#include "cli/open_command.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"
#include "platform/process/activation.h"
#include "platform/process/desktop_host.h"
#include "platform/process/launcher.h"

namespace tolvane {

namespace {

/// The program beside this one, else the one that is installed.
std::string desktopProgram() {
  const std::string name = "tolvane-desktop";
  std::error_code error;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto beside = self.parent_path() / name;
  return std::filesystem::exists(beside, error) ? beside.string() : name;
}

void startDesktopHost(const std::vector<std::string>& files) {
  const char* display = std::getenv("DISPLAY");  // NOLINT(concurrency-mt-unsafe): nobody sets it
  if (display == nullptr || *display == '\0') {
    throw PlatformError("There is no desktop session here to open files in.");
  }
  Launcher::start(desktopProgram(),
                  files.empty() ? std::vector<std::string>{DesktopHost::showWord} : files);
}

}  // namespace

ExitStatus openCommand(const Arguments& arguments) {
  std::vector<std::string> files;
  if (!arguments.operands.empty()) {
    files = namedFiles(arguments, 0);
  }
  if (std::any_of(files.begin(), files.end(), FileNames::isAddress)) {
    throw ConversionFailure::message("Choose a local file.");
  }
  // Paths are absolute, so none is taken for an option.
  if (!DesktopHost::open({files.begin(), files.end()}, Activation::ofThisProcess())) {
    startDesktopHost(files);
  }
  return ExitStatus::done;
}

}  // namespace tolvane
