#pragma once

#include <utility>

#include <QObject>

#include "platform/desktop/wake_notices.h"

namespace tolvane {

/// The notices of systemd's login service, or of one that speaks like it.
class LoginWakeNotices final : public QObject, public WakeNotices {
  Q_OBJECT

 public:
  LoginWakeNotices();

  void onWake(std::function<void()> woken) override { woken_ = std::move(woken); }

 private:
  Q_SLOT void prepareForSleep(bool begins);

  std::function<void()> woken_;
};

}  // namespace tolvane
