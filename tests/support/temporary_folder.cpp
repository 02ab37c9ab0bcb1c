#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "platform/files/file_system.h"

namespace tolvane::support {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
    : path_(fs::canonical(fs::temp_directory_path()) / ("tolvane-test-" + FileSystem::newUuid())) {
  fs::create_directory(path_);
}

TemporaryFolder::~TemporaryFolder() {
  FileSystem::removeQuietly(path_);
}

fs::path TemporaryFolder::write(std::string_view name, std::string_view content) const {
  const fs::path file = path_ / name;
  std::ofstream(file, std::ios::binary) << content;
  return file;
}

std::vector<std::string> TemporaryFolder::names() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string contentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace tolvane::support
