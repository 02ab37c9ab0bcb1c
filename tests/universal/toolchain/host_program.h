#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace tolvane::support {

enum class Identity { root, ordinaryUser };

/// A host of its own for engine runs, with the helper and the attacker beside it, in a folder that
/// every user can reach.
class HostProgram {
 public:
  HostProgram();

  /// Puts a shell script beside the host, where it finds its engines.
  void addEngine(const std::string& name, const std::string& script) const;

  /// A fresh workspace that belongs to `identity`.
  [[nodiscard]] std::filesystem::path workspace(Identity identity) const;

  /// The command line that runs the host, by way of another program where the test's own user is
  /// not the wanted one.
  [[nodiscard]] std::vector<std::string> command(Identity identity,
                                                 const std::vector<std::string>& arguments) const;

  /// Runs it to its end.
  /// @return what it printed.
  [[nodiscard]] static std::string output(const std::vector<std::string>& command);

  /// Starts it and does not wait. Its output goes to `file`.
  [[nodiscard]] static pid_t start(const std::vector<std::string>& command,
                                   const std::filesystem::path& file);

 private:
  TemporaryFolder folder_;
};

}  // namespace tolvane::support
