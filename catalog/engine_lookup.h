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
  /// Whether the installed "magick" can draw SVG: version 6 leaves that to rsvg-convert.
  [[nodiscard]] bool drawsVectorImages();
  /// Whether the installed "7zz" can unpack RAR, which some systems take out of it. Runs it.
  [[nodiscard]] bool unpacksRar();

 private:
  [[nodiscard]] bool listsRarCodec() const;
  template <typename Question>
  [[nodiscard]] bool remembered(std::string_view program, const Question& ask);
  [[nodiscard]] static bool standsOnDisk(const std::filesystem::path& path);

  const LocalToolchain& toolchain_;
  ExistenceTest applicationExists_;
  std::map<std::string, bool, std::less<>> answers_;  ///< by engine name, bundle path or ability
};

}  // namespace tolvane
