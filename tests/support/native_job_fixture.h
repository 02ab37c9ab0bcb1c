#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "engine/conversion_engine.h"
#include "tests/support/failure_text.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {

/// Runs native jobs from a folder of inputs into an empty folder.
class NativeJobFixture : public ::testing::Test {
 protected:
  using Names = std::vector<std::string>;

  /// @return the names of the placed files, in the order of the result.
  Names run(const std::string& action, const Names& inputs, Value::Map options = {}) {
    progress_.clear();
    Job job = {action, {}, results_.path(), std::move(options), token_, {}};
    for (const std::string& input : inputs) {
      job.inputs.push_back(sources_ / input);
    }
    job.progress = [this](int completed, int total) { progress_.emplace_back(completed, total); };
    Names names;
    for (const std::filesystem::path& placed : ConversionEngine().run(job)) {
      EXPECT_EQ(placed.parent_path(), results_.path());
      names.push_back(placed.filename().string());
    }
    return names;
  }

  std::string failureOf(const std::string& action, const Names& inputs, Value::Map options = {}) {
    return support::failureText([&] { return run(action, inputs, std::move(options)); });
  }

  /// A PDF whose pages say "<name> 1", "<name> 2", ...
  void makePdf(const std::string& name, int pages, int rotation = 0) {
    support::PdfBuilder builder;
    for (int page = 1; page <= pages; ++page) {
      builder.page({.rotation = rotation, .text = name + " " + std::to_string(page)});
    }
    builder.write(sources_ / name);
  }

  /// What the pages of a placed PDF say and how they are turned: "a.pdf 1 @90".
  Names pagesOf(const std::string& name) {
    const auto document = pdfLibrary().open(results_ / name);
    Names pages;
    for (int page = 0; page < document->pageCount(); ++page) {
      std::string text = document->text(page);
      text.erase(text.find_last_not_of(" \n\f") + 1);
      pages.push_back(text + " @" + std::to_string(document->geometry(page).rotation));
    }
    return pages;
  }

  support::TemporaryFolder sources_;
  support::TemporaryFolder results_;
  CancellationToken token_;
  std::vector<std::pair<int, int>> progress_;
};

}  // namespace tolvane
