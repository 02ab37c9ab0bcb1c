#include "platform/desktop/autostart_entry.h"

#include <map>
#include <string>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "platform/desktop/desktop_entry.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "platform/process/launcher.h"

namespace tolvane {

namespace {

using Keys = std::map<std::string, std::string>;

bool holds(const Keys& keys, const std::string& key, const std::string& value) {
  const auto found = keys.find(key);
  return found != keys.end() && found->second == value;
}

bool isProgramThere(const Keys& keys) {
  const auto exec = keys.find("Exec");
  const std::string program = exec != keys.end() ? DesktopEntry::programIn(exec->second) : "";
  if (program.find('/') != std::string::npos) {
    return FileSystem::isExecutableFile(program);
  }
  return !program.empty() && Launcher::isInstalled(program);
}

LoginStatus statusOf(const Keys& keys) {
  if (holds(keys, "Hidden", "true") || holds(keys, "X-GNOME-Autostart-enabled", "false") ||
      holds(keys, "X-MATE-Autostart-enabled", "false")) {
    return LoginStatus::requiresApproval;
  }
  return isProgramThere(keys) ? LoginStatus::enabled : LoginStatus::notFound;
}

}  // namespace

AutostartEntry::AutostartEntry(std::filesystem::path file, std::filesystem::path program)
    : file_(std::move(file)), program_(std::move(program)) {}

void AutostartEntry::registerApplication() {
  if (!FileSystem::isExecutableFile(program_)) {
    throw PlatformError(program_.string() + " is not an installed program.");
  }
  std::error_code error;
  std::filesystem::create_directories(file_.parent_path(), error);
  if (error) {
    throw PlatformError::fromErrno("create", file_.parent_path(), error.value());
  }
  FileSystem::writeAtomically(file_,
                              asBytes(fmt::format("[Desktop Entry]\n"
                                                  "Type=Application\n"
                                                  "Name=tolvane\n"
                                                  "Exec={}\n"
                                                  "Terminal=false\n"
                                                  "StartupNotify=false\n",
                                                  DesktopEntry::execValue(program_.string()))));
}

void AutostartEntry::unregisterApplication() {
  std::error_code error;
  std::filesystem::remove(file_, error);
  if (error) {
    throw PlatformError::fromErrno("remove", file_, error.value());
  }
}

LoginStatus AutostartEntry::status() const {
  std::error_code ignored;
  if (std::filesystem::symlink_status(file_, ignored).type() ==
      std::filesystem::file_type::not_found) {
    return LoginStatus::notRegistered;
  }
  try {
    const Bytes bytes = FileSystem::readAll(file_);
    return statusOf(DesktopEntry::keysIn(asText(bytes)));
  } catch (const PlatformError&) {
    return LoginStatus::notFound;
  }
}

}  // namespace tolvane
