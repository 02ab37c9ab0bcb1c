#pragma once

#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

#include "engine/conversion_engine.h"
#include "engine/job_options.h"
#include "engine/native_action.h"
#include "engine/output_placement.h"
#include "engine/primitives/file_info.h"

namespace tolvane {

/// Counts finished units of work and reports each step, on the worker. What is expected is said
/// first.
class WorkCounter {
 public:
  explicit WorkCounter(Progress progress) : progress_(std::move(progress)) {}

  void expect(int total) { total_ = total; }
  void advance(int units = 1);

 private:
  Progress progress_;
  int completed_ = 0;
  int total_ = 0;
};

/// What the actions share while a native job runs.
struct NativeJob {
  NativeAction action;
  std::vector<AdmittedFile> files;  ///< 1 to 100, all of the action's kind
  JobOptions options;
  const CancellationToken& token;
  WorkCounter work;
  StagedOutputs staged;

  /// Stages a picture as the action's kind of file, which its extension says.
  /// @param stem the final name up to the extension.
  /// @throws ConversionFailure, PlatformError
  void stagePicture(const std::string& stem, const Bitmap& picture);

  /// Stages a PDF after opening it once more to see that it holds every page.
  /// @param composer is gone afterwards, with the documents that only it kept alive.
  /// @throws ConversionFailure
  void stagePdf(const std::string& name, std::unique_ptr<PdfComposer> composer);
};

/// Admits the inputs, runs the action inside a workspace and places what it staged.
[[nodiscard]] std::vector<std::filesystem::path> runNativeJob(const ConversionEngine& engine,
                                                              const Job& job);

}  // namespace tolvane
