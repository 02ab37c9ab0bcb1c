#include "platform/desktop/x11/x_event_filter.h"

#include <utility>

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <xcb/xcb.h>

namespace tolvane {

class XEventFilter::Filter final : public QAbstractNativeEventFilter {
 public:
  explicit Filter(std::function<void(const XEvent&)> seen) : seen_(std::move(seen)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
  }

  bool nativeEventFilter(const QByteArray& kind, void* message, qintptr*) override {
    if (kind == "xcb_generic_event_t") {
      constexpr std::uint8_t sentMark = 0x80;
      const auto type = static_cast<const xcb_generic_event_t*>(message)->response_type;
      seen_({static_cast<std::uint8_t>(type & ~sentMark), message});
    }
    return false;  // Qt reads the time from it
  }

 private:
  std::function<void(const XEvent&)> seen_;
};

XEventFilter::XEventFilter(std::function<void(const XEvent&)> seen)
    : filter_(std::make_unique<Filter>(std::move(seen))) {}

XEventFilter::~XEventFilter() = default;

}  // namespace tolvane
