#pragma once

#include <functional>

#include <QQuickWindow>

namespace tolvane {

/// A window filled by one item. Escape that the content did not use, and the close button, only
/// tell the owner. Main thread only.
class ContentWindow final : public QQuickWindow {
 public:
  ContentWindow(const char* title, Qt::WindowFlags flags);

  /// @param dismissed an empty one takes the last one back.
  void onDismiss(std::function<void()> dismissed) { dismissed_ = std::move(dismissed); }

  /// @param exposed called whenever the window has come to the screen.
  void onExposed(std::function<void()> exposed) { exposed_ = std::move(exposed); }

  /// Takes the item out of the window that it is in.
  /// @param item not owned.
  void setContent(QQuickItem& item);
  /// Gives the content the size of the window at once, and not when the server confirms it.
  void fitContent();

 protected:
  void exposeEvent(QExposeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void dismiss();

  std::function<void()> dismissed_;
  std::function<void()> exposed_;
  bool wasExposed_ = false;
};

}  // namespace tolvane
