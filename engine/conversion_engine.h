#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/primitives/cancellation_token.h"
#include "engine/primitives/file_info.h"
#include "engine/primitives/limits.h"
#include "engine/primitives/value.h"
#include "platform/documents/pdf_document.h"

namespace tolvane {

/// Reports units of work; called on the worker thread.
using Progress = std::function<void(int completed, int total)>;

/// One job: an action over 1 to 100 files. `token` outlives the run.
struct Job {
  std::string action;                         ///< "pdf_png", "merge_pdf", ..., or "universal"
  std::vector<std::filesystem::path> inputs;  ///< in the user's order
  std::optional<std::filesystem::path> destination;  ///< absent: the folder of the first input
  Value::Map options;
  const CancellationToken& token;
  Progress progress;

  /// Calls `progress` where there is one.
  void report(int completed, int total) const {
    if (progress) {
      progress(completed, total);
    }
  }
};

/// A file that passed the gate.
struct AdmittedFile {
  FileInfo info;
  std::shared_ptr<PdfDocument> document;  ///< of a PDF, so that it is not opened twice
};

/// Admits files and runs the native PDF and image actions. Holds no state between calls but the
/// runner of universal jobs. Worker thread.
///
/// Every member throws ConversionFailure with a sentence for the user, or PlatformError.
class ConversionEngine {
 public:
  static constexpr std::uint64_t maxBytes = Limits::maxInputBytes;
  static constexpr int maxPages = Limits::maxPages;

  /// Runs a job whose action is "universal" around the engine that received it.
  using UniversalRunner = std::function<std::vector<std::filesystem::path>(
      const ConversionEngine& base, const Job& job)>;

  ConversionEngine() = default;
  explicit ConversionEngine(UniversalRunner universal) : universal_(std::move(universal)) {}

  /// The gate that every file passes: its kind and detail line, or its refusal.
  [[nodiscard]] AdmittedFile admit(const std::filesystem::path& given) const;
  [[nodiscard]] FileInfo inspect(const std::filesystem::path& url) const;

  /// Opens a PDF that is whole, unlocked and of 1 to 500 pages.
  [[nodiscard]] std::shared_ptr<PdfDocument> pdf(const std::filesystem::path& url) const;

  /// Inputs are never modified. After a failure the destination folder is as it was.
  /// @return the placed results, in the order of production.
  [[nodiscard]] std::vector<std::filesystem::path> run(const Job& job) const;

  /// A PNG preview of one page (counted from 0) that fits into 150 x 190 pixels.
  [[nodiscard]] Bytes thumbnail(const std::filesystem::path& url, std::int64_t index) const;

 private:
  UniversalRunner universal_;
};

}  // namespace tolvane
