#include "universal/toolchain/own_programs.h"

#include <system_error>

#include "platform/files/file_system.h"

namespace tolvane::OwnPrograms {

std::filesystem::path path(std::string_view name) {
  std::error_code ignored;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
  std::filesystem::path beside = folder / name;
  if (FileSystem::isExecutableFile(beside)) {
    return beside;
  }
  return folder.parent_path() / "lib/tolvane" / name;
}

}  // namespace tolvane::OwnPrograms
