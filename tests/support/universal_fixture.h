#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "universal/job/job_context.h"

namespace tolvane::support {

/// A workspace for operations of the universal engine, run by the installed engines or by scripts
/// that record what they are told.
class UniversalFixture : public ::testing::Test {
 protected:
  using Runs = std::vector<std::vector<std::string>>;

  UniversalFixture() {
    std::filesystem::create_directory(folder_ / "bin");
    std::filesystem::create_directory(folder_ / "work");
  }

  /// Makes an engine that records its arguments and then runs `script`, in which $output is its
  /// last argument.
  void standIn(const std::string& name, const std::string& script = "") const {
    const auto file = folder_.write("bin/" + name,
                                    "#!/bin/sh\n{ printf '\\036'; printf '%s\\037' \"$@\"; } >> " +
                                        name + ".runs\nfor output; do :; done\n" + script + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  }

  /// The arguments of every run of a stand-in.
  [[nodiscard]] Runs runsOf(const std::string& name) const {
    Runs runs;
    std::string argument;
    const std::string record = std::filesystem::exists(workspace() / (name + ".runs"))
                                   ? contentOf(workspace() / (name + ".runs"))
                                   : "";
    for (const char letter : record) {
      if (letter == '\x1E') {
        runs.emplace_back();
      } else if (letter == '\x1F') {
        runs.back().push_back(std::exchange(argument, {}));
      } else {
        argument.push_back(letter);
      }
    }
    return runs;
  }

  [[nodiscard]] std::filesystem::path workspace() const { return folder_ / "work"; }
  [[nodiscard]] JobContext withStandIns() const { return {base_, standIns_, token_, workspace()}; }
  [[nodiscard]] JobContext withEngines() const { return {base_, engines_, token_, workspace()}; }

  TemporaryFolder folder_;
  ConversionEngine base_;
  CancellationToken token_;

 private:
  LocalToolchain standIns_{EngineLocations{{folder_ / "bin"}}};
  LocalToolchain engines_;
};

}  // namespace tolvane::support
