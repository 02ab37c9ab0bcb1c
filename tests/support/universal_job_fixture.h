#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "engine/conversion_engine.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"
#include "universal/dispatch/universal_engine.h"

namespace tolvane {

/// Runs universal jobs with the machine's engines from a folder of inputs into an empty folder.
class UniversalJobFixture : public ::testing::Test {
 protected:
  using Names = std::vector<std::string>;

  /// @return the names of the placed files, in the order of the result.
  Names run(const std::string& capability, const Names& inputs, Value::Map options = {}) {
    options["capabilityID"] = capability;
    Names names;
    for (const std::filesystem::path& placed : runJob(inputs, std::move(options))) {
      EXPECT_EQ(placed.parent_path(), results_.path());
      names.push_back(placed.filename().string());
    }
    return names;
  }

  std::string failureOf(const std::string& capability,
                        const Names& inputs,
                        Value::Map options = {}) {
    return support::failureText([&] { return run(capability, inputs, std::move(options)); });
  }

  std::vector<std::filesystem::path> runJob(const Names& inputs,
                                            Value::Map options,
                                            const std::string& action = "universal") {
    progress_.clear();
    Job job = {action, {}, destination_, std::move(options), token_, {}};
    for (const std::string& input : inputs) {
      job.inputs.push_back(sources_ / input);
    }
    job.progress = [this](int completed, int total) {
      progress_.emplace_back(completed, total);
      if (afterEachFile_) {
        afterEachFile_();
      }
    };
    return UniversalEngine::completeEngine(toolchain_).run(job);
  }

  /// Makes an input with an engine, whose current directory is the folder of inputs.
  void make(const std::string& engine, const std::vector<std::string>& arguments) {
    constexpr double timeout = 60;  // seconds
    LocalToolchain().run(
        {.name = engine, .arguments = arguments, .in = sources_.path(), .timeout = timeout},
        token_);
  }

  support::TemporaryFolder sources_;
  support::TemporaryFolder results_;
  std::optional<std::filesystem::path> destination_ = results_.path();
  LocalToolchain toolchain_;
  CancellationToken token_;
  std::vector<std::pair<int, int>> progress_;
  std::function<void()> afterEachFile_;
};

}  // namespace tolvane
