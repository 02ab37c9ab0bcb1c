#pragma once

#include <functional>

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

#include "platform/desktop/x11/key_repetition.h"

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

  /// Takes the item out of the window that it is in. It is the window's focus.
  /// @param item not owned.
  void setContent(QQuickItem& item);
  /// Leaves a margin around the content, in points; 0 at first.
  void setMargin(int margin) { margin_ = margin; }
  /// Gives the content the size of the window at once, and not when the server confirms it.
  void fitContent();

 protected:
  void exposeEvent(QExposeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void dismiss();
  /// A key that is held down dismisses one window, and not the one that comes up instead as well.
  [[nodiscard]] bool isRepetition(const QKeyEvent& press) const;

  std::function<void()> dismissed_;
  std::function<void()> exposed_;
  QPointer<QQuickItem> content_;  // may have moved to another window
  int margin_ = 0;
  KeyRepetition repetition_;
  bool wasExposed_ = false;
};

}  // namespace tolvane
