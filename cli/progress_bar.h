#pragma once

namespace tolvane {

/// One line on standard error that grows with the job. Draws nothing when standard error is no
/// terminal.
class ProgressBar {
 public:
  enum class Visibility { onTerminals, hidden };

  explicit ProgressBar(Visibility visibility);
  ~ProgressBar();  // wipes the line
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void show(long completed, long total);
  void wipe();

 private:
  bool isVisible_;
  bool isDrawn_ = false;
};

}  // namespace tolvane
