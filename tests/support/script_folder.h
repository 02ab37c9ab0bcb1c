#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/eventually.h"
#include "tests/support/temporary_folder.h"

namespace tolvane::support {

/// A folder of small fake programs that comes first in PATH. One per test program at a time.
class ScriptFolder {
 public:
  ScriptFolder() : path_(std::getenv("PATH")) {
    ::setenv("PATH", (folder_.path().string() + ":" + path_).c_str(), 1);
  }
  ~ScriptFolder() { ::setenv("PATH", path_.c_str(), 1); }
  ScriptFolder(const ScriptFolder&) = delete;
  ScriptFolder& operator=(const ScriptFolder&) = delete;

  /// Adds a program. It finds this folder in $here.
  void add(const std::string& name, const std::string& script) const {
    const std::filesystem::path file =
        folder_.write(name, "#!/bin/sh\nhere='" + folder_.path().string() + "'\n" + script + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  }

  /// Adds a program that leaves its arguments, one a line, and its input in the file `record`. The
  /// file appears when it is complete.
  void addRecorder(const std::string& name, const std::string& record) const {
    add(name,
        "{ printf '%s\\n' \"$@\"; cat; } > \"$here/part\" && mv \"$here/part\" \"$here/" + record +
            "\"");
  }

  /// Waits for a file that a program leaves, removes it and returns what it held.
  [[nodiscard]] std::string take(const std::string& record) const {
    const std::filesystem::path file = folder_ / record;
    if (!eventually([&file] { return std::filesystem::exists(file); })) {
      return "(nothing)";
    }
    std::string content = contentOf(file);
    std::filesystem::remove(file);
    return content;
  }

  [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }

 private:
  std::string path_;
  TemporaryFolder folder_;
};

}  // namespace tolvane::support
