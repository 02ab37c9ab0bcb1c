#pragma once

#include <filesystem>
#include <functional>
#include <vector>

namespace tolvane {

/// Takes files that are dropped on the palette, or pasted into it. Main thread only.
class FileDropView {
 public:
  using Handler = std::function<void(std::vector<std::filesystem::path> files)>;

  FileDropView() = default;
  virtual ~FileDropView() = default;
  FileDropView(const FileDropView&) = delete;
  FileDropView& operator=(const FileDropView&) = delete;

  /// Whatever is dragged over the view is offered to be copied. Of what is dropped only local files
  /// count (FileNames::localPath() reads their addresses): when there are any, `files` is
  /// called and the drop is accepted, otherwise it is refused. An empty handler takes the last one
  /// back.
  virtual void onFiles(Handler files) = 0;
};

}  // namespace tolvane
