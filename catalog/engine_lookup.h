#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "universal/toolchain/local_toolchain.h"

namespace tolvane {

/// Which programs are installed, looked up once each. Made anew for every answer of the catalog, so
/// that a hundred files ask the disk once while an engine installed meanwhile is seen the next
/// time. Belongs to one thread.
class EngineLookup {
 public:
  using ExistenceTest = std::function<bool(const std::filesystem::path&)>;

  /// @param toolchain not owned; outlives this object.
  /// @param applicationExists answers for the paths of application bundles; by default, the disk.
  explicit EngineLookup(const LocalToolchain& toolchain,
                        ExistenceTest applicationExists = standsOnDisk);

  [[nodiscard]] bool hasEngine(std::string_view engine);
  [[nodiscard]] bool hasApplication(std::string_view bundle);

 private:
  template <typename Question>
  [[nodiscard]] bool remembered(std::string_view program, const Question& ask);
  [[nodiscard]] static bool standsOnDisk(const std::filesystem::path& path);

  const LocalToolchain& toolchain_;
  ExistenceTest applicationExists_;
  std::map<std::string, bool, std::less<>> answers_;  ///< by engine name or bundle path
};

}  // namespace tolvane
