#include "universal/toolchain/socket_directory.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_system.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t nameLength = 8;

/// @return whether `argument` is, or is an option that ends in, a path or a file URL below
/// `folder`.
bool pointsBelow(std::string_view argument, const std::string& folder) {
  constexpr std::string_view scheme = "file://";
  if (const auto url = argument.find(scheme); url != std::string_view::npos) {
    argument.remove_prefix(url + scheme.size());
  }
  return argument.starts_with(folder + "/");
}

bool hides(const fs::path& cover, const ConfinedEngine& engine) {
  const std::string folder = cover.string();
  const auto isBelow = [&](const std::string& path) {
    return path == folder || pointsBelow(path, folder);
  };
  return isBelow(engine.folder.string()) || isBelow(FileSystem::resolved(engine.folder).string()) ||
         isBelow(engine.root.string()) || isBelow(engine.program.string()) ||
         std::any_of(engine.arguments.begin(), engine.arguments.end(), isBelow);
}

/// The suite tries these two.
fs::path coverFor(const ConfinedEngine& engine) {
  for (const char* cover : {"/var/tmp", "/tmp"}) {
    std::error_code ignored;
    if (fs::is_directory(cover, ignored) && !hides(cover, engine)) {
      return cover;
    }
  }
  throw ConversionFailure::message(
      "The office suite cannot use files in both /tmp and /var/tmp. Move the file to another "
      "folder.");
}

}  // namespace

SocketDirectory::SocketDirectory() : folder_("/tmp", "tv-", nameLength) {}

void SocketDirectory::addTo(ConfinedEngine& engine) const {
  engine.sockets = folder_.path();
  engine.cover = coverFor(engine);
  engine.arguments.insert(engine.arguments.begin(),
                          "-env:OSL_SOCKET_PATH=" + folder_.path().string());
}

}  // namespace tolvane
