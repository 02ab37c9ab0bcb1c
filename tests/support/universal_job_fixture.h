#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/support/job_fixture.h"
#include "universal/dispatch/universal_engine.h"

namespace tolvane {

/// Runs universal jobs with the machine's engines.
class UniversalJobFixture : public support::JobFixture {
 protected:
  UniversalJobFixture() : JobFixture(UniversalEngine::completeEngine()) {}

  Names run(const std::string& capability, const Names& inputs, Value::Map options = {}) {
    options["capabilityID"] = capability;
    return JobFixture::run("universal", inputs, std::move(options));
  }

  std::string failureOf(const std::string& capability,
                        const Names& inputs,
                        Value::Map options = {}) {
    options["capabilityID"] = capability;
    return JobFixture::failureOf("universal", inputs, std::move(options));
  }

  /// Makes an input with an engine, whose current directory is the folder of inputs.
  void make(const std::string& engine, const std::vector<std::string>& arguments) {
    constexpr double timeout = 60;  // seconds
    toolchain_.run(
        {.name = engine, .arguments = arguments, .in = sources_.path(), .timeout = timeout},
        token_);
  }

  LocalToolchain toolchain_;
};

}  // namespace tolvane
