#include "universal/toolchain/readable_places.h"

#include <array>
#include <cstdlib>
#include <map>
#include <string>

#include "platform/files/file_system.h"

namespace tolvane::ReadablePlaces {

namespace {

namespace fs = std::filesystem;

/// Whole folders only where packages put what is the same on every machine: not /etc, /var or
/// /opt, which hold what somebody entered.
constexpr std::array everyEngine = {"/usr",
                                    "/bin",
                                    "/sbin",
                                    "/lib",
                                    "/lib32",
                                    "/lib64",
                                    "/etc/alternatives",
                                    "/etc/ld.so.cache",
                                    "/etc/locale.alias",
                                    "/etc/localtime",
                                    "/dev/full",
                                    "/dev/random",
                                    "/dev/urandom",
                                    "/dev/zero",
                                    "/sys/devices/system/cpu"};

constexpr std::array fonts = {"/etc/fonts", "/var/cache/fontconfig", "/var/lib/fonts"};

/// A package manager that keeps everything below a folder of its own.
constexpr const char* packagePrefix = "/home/linuxbrew/.linuxbrew";

const std::map<std::string_view, std::vector<fs::path>>& settings() {
  static const std::map<std::string_view, std::vector<fs::path>> byEngine = {
      {"magick", {"/etc/ImageMagick-6", "/etc/ImageMagick-7"}},
      {"soffice",
       {"/etc/libreoffice", "/etc/papersize", "/var/lib/libreoffice", "/var/spool/libreoffice"}},
  };
  return byEngine;
}

bool drawsText(std::string_view engine) {
  return engine == "soffice" || engine == "magick" || engine == "ffmpeg";
}

/// The office suite from its maker stands in a folder of its own: /opt/libreoffice7.5/program.
bool hasFolderOfItsOwn(const fs::path& program) {
  return program.parent_path().filename() == "program" &&
         program.parent_path().parent_path().has_relative_path();
}

}  // namespace

fs::path ownData() {
  if (const char* folder = std::getenv("XDG_DATA_HOME"); folder != nullptr && *folder == '/') {
    return folder;
  }
  const char* home = std::getenv("HOME");
  return home != nullptr && *home == '/' ? fs::path(home) / ".local/share" : fs::path();
}

std::vector<fs::path> of(std::string_view engine, const fs::path& program) {
  std::vector<fs::path> places(everyEngine.begin(), everyEngine.end());
  const fs::path resolved = FileSystem::resolved(program);
  places.push_back(resolved);
  if (engine == "magick") {
    places.push_back(resolved.parent_path() / "magick");  // our policy stands beside our program
  }
  if (engine == "soffice" && hasFolderOfItsOwn(resolved)) {
    places.push_back(resolved.parent_path().parent_path());
  }
  if (program.native().starts_with(packagePrefix)) {
    places.emplace_back(packagePrefix);
  }
  if (drawsText(engine)) {
    places.insert(places.end(), fonts.begin(), fonts.end());
    if (const fs::path data = ownData(); !data.empty()) {
      places.push_back(data / "fonts");
    }
  }
  if (const auto own = settings().find(engine); own != settings().end()) {
    places.insert(places.end(), own->second.begin(), own->second.end());
  }
  return places;
}

}  // namespace tolvane::ReadablePlaces
