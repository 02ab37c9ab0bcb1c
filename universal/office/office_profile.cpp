#include "universal/office/office_profile.h"

#include <string_view>
#include <system_error>

#include "platform/files/bytes.h"
#include "platform/files/file_system.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr unsigned ownerOnly = 0700;

/// Only documents in trusted places, of which there are none, may point at pictures. Without it the
/// suite puts every picture that it can read into the result.
constexpr std::string_view settings = R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Common/Security/Scripting">
<prop oor:name="BlockUntrustedRefererLinks" oor:op="fuse"><value>true</value></prop>
</item>
</oor:items>
)";

}  // namespace

void makeOfficeProfile(const fs::path& profile) {
  const fs::path user = profile / "user";
  const fs::path file = user / "registrymodifications.xcu";
  std::error_code ignored;
  if (fs::exists(file, ignored)) {
    return;  // the suite has added its own settings to it
  }
  FileSystem::createDirectory(profile, ownerOnly);
  FileSystem::createDirectory(user, ownerOnly);
  FileSystem::writeAtomically(file, asBytes(settings));
}

}  // namespace tolvane::UniversalEngine
