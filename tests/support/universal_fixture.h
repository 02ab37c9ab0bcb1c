#pragma once

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/primitives/split_text.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/words.h"
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
    // Each run begins with a separator of its own, each argument ends with one.
    const std::string record = contentOf(workspace() / (name + ".runs"));
    Runs runs;
    for (const std::string_view run : split(record, "\x1E")) {
      const std::vector<std::string_view> arguments = split(run, "\x1F");
      runs.emplace_back(arguments.begin(), arguments.end() - 1);
    }
    runs.erase(runs.begin());
    return runs;
  }

  /// The same as command lines: with quotes around an argument that holds a blank, WORK for the
  /// workspace and * for a unique name.
  [[nodiscard]] std::vector<std::string> linesOf(const std::string& name) const {
    std::vector<std::string> lines;
    for (const std::vector<std::string>& run : runsOf(name)) {
      std::string line;
      for (const std::string& argument : run) {
        const std::string quote = argument.find(' ') == std::string::npos ? "" : "'";
        line += (line.empty() ? "" : " ") + quote + argument + quote;
      }
      for (std::size_t at = 0; (at = line.find(workspace().string())) != std::string::npos;) {
        line.replace(at, workspace().string().size(), "WORK");
      }
      static const std::regex unique("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
      lines.push_back(std::regex_replace(line, unique, "*"));
    }
    return lines;
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
