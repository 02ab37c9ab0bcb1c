#include "universal/toolchain/engine_locations.h"

#include <algorithm>
#include <cstring>
#include <system_error>

#include "platform/files/file_system.h"
#include "universal/toolchain/own_programs.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

/// @param folder its name ends in '*'.
/// @return what it stands for now, the highest version first.
std::vector<fs::path> expanded(const fs::path& folder) {
  const std::string prefix =
      folder.filename().string().substr(0, folder.filename().string().size() - 1);
  std::vector<fs::path> found;
  std::error_code ignored;
  for (fs::directory_iterator entry(folder.parent_path(), ignored), end; !ignored && entry != end;
       entry.increment(ignored)) {
    if (entry->path().filename().string().starts_with(prefix)) {
      found.push_back(entry->path());
    }
  }
  std::sort(found.begin(), found.end(), [](const fs::path& left, const fs::path& right) {
    return ::strverscmp(left.c_str(), right.c_str()) > 0;
  });
  return found;
}

/// Adds the paths that `pattern` stands for.
void addExpanded(const fs::path& pattern, std::vector<fs::path>& paths) {
  fs::path folder;
  for (auto part = pattern.begin(); part != pattern.end(); ++part) {
    folder /= *part;
    if (part->string().ends_with('*')) {
      const fs::path rest = pattern.lexically_relative(folder);
      for (const fs::path& found : expanded(folder)) {
        paths.push_back(found / rest);
      }
      return;
    }
  }
  paths.push_back(pattern);
}

}  // namespace

EngineLocations EngineLocations::standard() {
  EngineLocations locations = {{"/home/linuxbrew/.linuxbrew/bin", "/usr/local/bin", "/usr/bin"}};
  locations.special["soffice"] = {"/opt/libreoffice*/program/soffice",
                                  "/usr/lib/libreoffice/program/soffice",
                                  "/usr/local/bin/soffice",
                                  "/usr/bin/soffice"};
  // Where the stand-in for ImageMagick looks.
  locations.special["rsvg-convert"] = {"/usr/bin/rsvg-convert"};
  // Version 6 of ImageMagick has no command of that name.
  locations.adapters["magick"] = {OwnPrograms::path("tolvane-magick"), "/usr/bin/convert-im6.q16"};
  return locations;
}

std::vector<fs::path> EngineLocations::candidates(std::string_view engine) const {
  std::vector<fs::path> paths;
  if (const auto list = special.find(engine); list != special.end()) {
    for (const fs::path& pattern : list->second) {
      addExpanded(pattern, paths);
    }
  } else {
    for (const fs::path& folder : folders) {
      paths.push_back(folder / engine);
    }
  }
  const auto adapter = adapters.find(engine);
  if (adapter != adapters.end() && FileSystem::isExecutableFile(adapter->second.needed)) {
    paths.push_back(adapter->second.program);
  }
  return paths;
}

}  // namespace tolvane
