#include "bridge/program_results.h"

#include <cstdlib>
#include <string_view>
#include <system_error>

#include "platform/files/platform_error.h"
#include "platform/process/file_manager.h"
#include "platform/process/launcher.h"

namespace tolvane {

namespace {

constexpr const char* opener = "xdg-open";

/// A result action reports nothing, so a program that is missing or does not start ends it here.
void startQuietly(const std::string& program,
                  const std::vector<std::string>& arguments,
                  const std::string& input = {}) {
  try {
    Launcher::start(program, arguments, input);
  } catch (const PlatformError&) {
    return;
  }
}

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): nobody sets any
  return value != nullptr && *value != '\0';
}

}  // namespace

void ProgramResults::reveal(const std::vector<Path>& files) {
  if (files.empty() || FileManager::reveal(files)) {
    return;
  }
  open(files.front().parent_path());
}

void ProgramResults::open(const Path& file) {
  // Some desktops answer a missing file with a dialogue, others with the wrong application.
  std::error_code ignored;
  if (std::filesystem::exists(file, ignored)) {
    startQuietly(opener, {file.string()});
  }
}

void ProgramResults::copyText(const std::string& text) {
  if (isSet("WAYLAND_DISPLAY") && Launcher::isInstalled("wl-copy")) {
    startQuietly("wl-copy", {"--type", "text/plain"}, text);
  } else {
    startQuietly("xclip", {"-selection", "clipboard"}, text);
  }
}

}  // namespace tolvane
