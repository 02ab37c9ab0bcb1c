#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "engine/conversion_engine.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"

namespace tolvane::support {

/// Runs jobs from a folder of inputs into an empty folder.
class JobFixture : public ::testing::Test {
 protected:
  using Names = std::vector<std::string>;

  explicit JobFixture(ConversionEngine engine) : engine_(std::move(engine)) {}

  /// @return the names of the placed files, in the order of the result.
  Names run(const std::string& action, const Names& inputs, Value::Map options = {}) {
    Names names;
    for (const std::filesystem::path& placed : runJob(inputs, std::move(options), action)) {
      EXPECT_EQ(placed.parent_path(), results_.path());
      names.push_back(placed.filename().string());
    }
    return names;
  }

  std::string failureOf(const std::string& action, const Names& inputs, Value::Map options = {}) {
    return failureText([&] { return run(action, inputs, std::move(options)); });
  }

  std::vector<std::filesystem::path> runJob(const Names& inputs,
                                            Value::Map options,
                                            const std::string& action) {
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
    return engine_.run(job);
  }

  TemporaryFolder sources_;
  TemporaryFolder results_;
  std::optional<std::filesystem::path> destination_ = results_.path();
  CancellationToken token_;
  std::vector<std::pair<int, int>> progress_;
  std::function<void()> afterEachFile_;
  ConversionEngine engine_;
};

}  // namespace tolvane::support
