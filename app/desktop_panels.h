#pragma once

#include <memory>

#include "desktop/desktop_services.h"
#include "platform/desktop/x11/x_server.h"

class QFileDialog;
class QWindow;

namespace tolvane {

/// The toolkit's file dialogues, above the palette. One panel at a time: another one that is asked
/// for meanwhile counts as cancelled, once the open one has closed, which comes to the front.
class DesktopPanels final : public Panels {
 public:
  /// Neither is owned; both outlive this object.
  DesktopPanels(QWindow& palette, XServer& server);
  ~DesktopPanels() override;
  DesktopPanels(const DesktopPanels&) = delete;
  DesktopPanels& operator=(const DesktopPanels&) = delete;

  void chooseFiles(std::function<void(std::optional<std::vector<Path>>)> closed) override;
  void chooseFolder(std::function<void(std::optional<Path>)> closed) override;

 private:
  struct DeleteLater {
    void operator()(QFileDialog* dialog) const;
  };
  using Dialog = std::unique_ptr<QFileDialog, DeleteLater>;

  using Closed = std::function<void(std::optional<std::vector<Path>>)>;

  void show(Dialog dialog, Closed closed);
  void finished(int result);

  QWindow& palette_;
  XServer& server_;
  Dialog open_;
  std::vector<Closed> waiting_;  // the first for the open panel
};

}  // namespace tolvane
