#include "desktop/palette_window_service.h"

#include <chrono>
#include <utility>

#include "desktop/native_policies.h"

namespace tolvane {

PaletteWindowService::PaletteWindowService(const Surroundings& surroundings)
    : desktop_(surroundings), invocationPoint_(surroundings.pointer.location()) {
  desktop_.settingsWindow.setContentSize({460, 720});
  desktop_.panel.setFrame({0, 0, preferredWidth_, preferredHeight_});
  desktop_.panel.onDismiss([this] { hide(); });
  desktop_.pointer.startMonitoring([this](const PointerEvent& event) { pressed(event); },
                                   [this](const PointerEvent& event) { moved(event); });
  desktop_.settingsWindow.onDismiss([this] { settingsDismissed(); });
}

PaletteWindowService::~PaletteWindowService() {
  desktop_.pointer.stopMonitoring();
  desktop_.panel.onDismiss({});
  desktop_.settingsWindow.onDismiss({});
  desktop_.dropView.onFiles({});
}

void PaletteWindowService::beginInvocation(const std::optional<Rectangle>& fileFrame) {
  fileFrame_ = fileFrame;
  invocationPoint_ = desktop_.pointer.location();
  auto front = desktop_.frontApplication.current();
  if (!front || !front->isThisProcess) {
    previousApp_ = std::move(front);
  }
}

void PaletteWindowService::show() {
  constexpr std::chrono::milliseconds fadeDuration{160};
  restorePalette();
  desktop_.panel.setFrame(frameWithin(visibleArea()));
  updateMaterialMask();
  const bool fadesIn = !desktop_.panel.isVisible() && !desktop_.permissions.reducesMotion();
  desktop_.panel.setOpacity(fadesIn ? 0 : 1);
  desktop_.panel.makeKeyAndOrderFront();
  updatePassThrough(desktop_.pointer.location());
  if (fadesIn) {
    desktop_.panel.fadeIn(fadeDuration);
  }
}

void PaletteWindowService::present(const PaletteStage& stage) {
  if (stage.name == "settings") {
    presentSettings();
    return;
  }
  const bool wereSettingsVisible = desktop_.settingsWindow.isVisible();
  restorePalette();
  radialActionCount_ = stage.actionCount;
  takeSizesOf(stage);
  if (desktop_.panel.isVisible() || wereSettingsVisible) {
    show();
  }
}

void PaletteWindowService::presentSettings() {
  radialMode_ = false;
  desktop_.panel.setMouseEvents(MouseEvents::accepted);
  if (!isContentInSettings_) {
    desktop_.panel.orderOut();
    desktop_.content.moveTo(ContentView::Window::settingsWindow);
    isContentInSettings_ = true;
  }
  updateMaterialMask();
  desktop_.settingsWindow.centreAndMakeKey();
}

void PaletteWindowService::takeSizesOf(const PaletteStage& stage) {
  radialMode_ = stage.name == "home" && stage.hasFiles;
  if (radialMode_) {
    preferredWidth_ = 460;
    preferredHeight_ = 460;
  } else if (stage.name == "home") {
    preferredWidth_ = 320;
    preferredHeight_ = 300;
  } else if (stage.name == "editor") {
    preferredWidth_ = 440;
    preferredHeight_ = 560;
  } else if (stage.name == "finished") {
    preferredWidth_ = 380;
    preferredHeight_ = 410;
  } else {
    preferredWidth_ = 380;
    preferredHeight_ = 510;
  }
}

void PaletteWindowService::restorePalette() {
  if (isContentInSettings_) {
    desktop_.content.moveTo(ContentView::Window::palettePanel);
    isContentInSettings_ = false;
  }
  desktop_.settingsWindow.orderOut();
}

void PaletteWindowService::updateMaterialMask() {
  const Size size = desktop_.content.size();
  if (radialMode_) {
    backdropMask_ = NativePolicies::wheelMaterialPath(size, radialActionCount_);
  } else {
    constexpr double cornerRadius = 20;
    backdropMask_ = Path();
    backdropMask_.addRoundedRectangle({0, 0, size.width, size.height}, cornerRadius);
  }
  desktop_.content.setBackdropShape(backdropMask_,
                                    radialMode_ ? ContentView::FreeParts::letPointerThrough
                                                : ContentView::FreeParts::takePointer);
}

Rectangle PaletteWindowService::visibleArea() const {
  const Point anchor = fileFrame_ ? fileFrame_->middle() : invocationPoint_;
  const std::optional<Screen> screen = desktop_.screens.holding(anchor);
  return screen ? screen->visibleFrame : Rectangle{0, 0, 1000, 800};
}

Rectangle PaletteWindowService::frameWithin(const Rectangle& visible) const {
  constexpr double wheelDiameter = 460;
  return radialMode_
             ? NativePolicies::radialFrame(invocationPoint_, visible, wheelDiameter, fileFrame_)
             : NativePolicies::paletteFrame(
                   invocationPoint_, visible, preferredHeight_, preferredWidth_, fileFrame_);
}

bool PaletteWindowService::isOnBackdrop(Point point) const {
  const Rectangle frame = desktop_.panel.frame();
  return backdropMask_.contains({point.x - frame.x, point.y - frame.y});
}

bool PaletteWindowService::containsInteractivePoint(Point point) const {
  return desktop_.panel.frame().contains(point) && (!radialMode_ || isOnBackdrop(point));
}

bool PaletteWindowService::isOnPalette(const PointerEvent& event) const {
  if (event.target == PointerTarget::otherOwnWindow) {
    return false;
  }
  // Where the screen cannot blend windows the round corners are cut off: a press there goes to the
  // window below, which takes the focus, and Escape would not reach the palette any more.
  const bool isCutOff =
      event.target == PointerTarget::otherApplication && !isOnBackdrop(event.location);
  return !isCutOff && containsInteractivePoint(event.location);
}

bool PaletteWindowService::isOpenToDismissal() const {
  return desktop_.panel.isVisible() && !suspendsDismissal_;
}

void PaletteWindowService::updatePassThrough(Point pointer) {
  if (isOpenToDismissal()) {
    const bool isIgnored = radialMode_ && !containsInteractivePoint(pointer);
    desktop_.panel.setMouseEvents(isIgnored ? MouseEvents::ignored : MouseEvents::accepted);
  }
}

void PaletteWindowService::moved(const PointerEvent& event) {
  updatePassThrough(event.location);
}

void PaletteWindowService::pressed(const PointerEvent& event) {
  if (isOpenToDismissal() && !isOnPalette(event)) {
    orderOut();
  }
}

void PaletteWindowService::orderOut() {
  desktop_.panel.orderOut();
  desktop_.panel.setMouseEvents(MouseEvents::accepted);
  desktop_.settingsWindow.orderOut();
}

void PaletteWindowService::hide() {
  orderOut();
  if (previousApp_ && desktop_.frontApplication.isRunning(*previousApp_)) {
    desktop_.frontApplication.activate(*previousApp_);
  }
}

void PaletteWindowService::settingsDismissed() {
  restorePalette();
  if (onSettingsDismissed_) {
    onSettingsDismissed_();
  }
  show();
}

void PaletteWindowService::onSettingsDismissed(std::function<void()> dismissed) {
  onSettingsDismissed_ = std::move(dismissed);
}

void PaletteWindowService::onFiles(std::function<void(Files)> dropped) {
  desktop_.dropView.onFiles(std::move(dropped));
}

}  // namespace tolvane
