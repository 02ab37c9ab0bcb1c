#pragma once

#include <memory>

#include "platform/desktop/pointer.h"
#include "platform/desktop/x11/raw_input.h"

class QWindow;

namespace tolvane {

/// Listens to the pointer only while the palette is visible, so that nothing runs when it is not.
/// Moves are not told: each would wake this process and ask the server for what the shape of the
/// panel's window, which lets events through by itself, leaves nobody to use.
class XPointer final : public Pointer {
 public:
  /// Nothing is owned; all outlive this object.
  XPointer(const XServer& server, RawInput& input, QWindow& palette);
  ~XPointer() override;
  XPointer(const XPointer&) = delete;
  XPointer& operator=(const XPointer&) = delete;

  [[nodiscard]] Point location() const override;
  void startMonitoring(Handler pressed, Handler moved) override;
  void stopMonitoring() override;

 private:
  class VisibilityConnection;

  void follow(bool isPaletteVisible);
  [[nodiscard]] PointerTarget target() const;

  const XServer& server_;
  RawInput& input_;
  QWindow& palette_;
  Handler pressed_;
  std::unique_ptr<RawInput::Listener> presses_;
  std::unique_ptr<VisibilityConnection> visibility_;
};

}  // namespace tolvane
