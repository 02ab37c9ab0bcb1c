#pragma once

#include <memory>

#include <QObject>

#include "platform/desktop/file_drop_view.h"
#include "platform/desktop/qt/content_window.h"

class QMimeData;

namespace tolvane {

/// Takes files that are dragged onto a window, or copied elsewhere and pasted into it (Ctrl+V).
class QtFileDropView final : public FileDropView {
 public:
  /// Neither window is owned; both outlive this object.
  QtFileDropView(ContentWindow& panel, ContentWindow& settings);
  ~QtFileDropView() override;
  QtFileDropView(const QtFileDropView&) = delete;
  QtFileDropView& operator=(const QtFileDropView&) = delete;

  void onFiles(Handler files) override { files_ = std::move(files); }

 private:
  class Filter;

  /// @return whether there were local files, and somebody to take them.
  bool take(const QMimeData* data);

  Handler files_;
  std::unique_ptr<Filter> filter_;
};

}  // namespace tolvane
