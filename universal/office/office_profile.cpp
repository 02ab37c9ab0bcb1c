#include "universal/office/office_profile.h"

#include <string>
#include <string_view>
#include <system_error>

#include "engine/primitives/split_text.h"
#include "platform/files/bytes.h"
#include "platform/files/file_system.h"
#include "platform/text/text_file.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

/// Only documents in trusted places, of which there are none, may point at pictures. Without it the
/// suite puts every picture that it can read into the result.
constexpr std::string_view settings = R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Common/Security/Scripting">
<prop oor:name="BlockUntrustedRefererLinks" oor:op="fuse"><value>true</value></prop>
</item>
</oor:items>
)";

/// The number of the build as the suite's own program folder gives it; empty when it does not.
std::string buildOf(const fs::path& suite) {
  std::error_code error;
  const fs::path program = fs::canonical(suite, error);
  const fs::path version = program.parent_path() / "versionrc";
  if (error || !fs::is_regular_file(version, error)) {
    return {};
  }
  constexpr std::string_view key = "buildid=";
  const std::string text = TextFile::read(version);
  std::string build;
  forEachPiece(text, "\n", [&build, key](std::string_view line) {
    if (line.starts_with(key)) {
      build = line.substr(key.size());
    }
  });
  return build;
}

/// In a profile of another build, for which it takes a new one, the suite starts a second time
/// after a look through its extensions: a sixth of the time that a letter takes.
void nameBuild(const fs::path& user, const fs::path& suite) {
  const std::string build = buildOf(suite);
  if (!build.empty()) {
    FileSystem::createDirectory(user / "extensions", FileSystem::ownerOnly);
    FileSystem::writeAtomically(user / "extensions" / "buildid", asBytes(build));
  }
}

}  // namespace

void makeOfficeProfile(const fs::path& profile, const fs::path& suite) {
  const fs::path user = profile / "user";
  const fs::path file = user / "registrymodifications.xcu";
  std::error_code ignored;
  if (fs::exists(file, ignored)) {
    return;  // the suite has added its own settings to it
  }
  FileSystem::createDirectory(profile, FileSystem::ownerOnly);
  FileSystem::createDirectory(user, FileSystem::ownerOnly);
  nameBuild(user, suite);
  FileSystem::writeAtomically(file, asBytes(settings));
}

}  // namespace tolvane::UniversalEngine
