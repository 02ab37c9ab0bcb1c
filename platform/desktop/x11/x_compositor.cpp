#include "platform/desktop/x11/x_compositor.h"

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include "platform/desktop/x11/x_reply.h"

namespace tolvane {

namespace {

/// Owned by the compositing manager of the first screen.
constexpr const char* compositorSelection = "_NET_WM_CM_S0";

std::uint8_t listenToOwners(const XServer& server, XAtom selection) {
  xcb_connection_t* connection = server.connection();
  const auto* extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
  if (extension == nullptr || extension->present == 0) {
    return 0;
  }
  // A client that has not said which version it speaks is told nothing.
  const auto cookie =
      xcb_xfixes_query_version(connection, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
  const XReply<xcb_xfixes_query_version_reply_t> version(
      xcb_xfixes_query_version_reply(connection, cookie, nullptr));
  xcb_xfixes_select_selection_input(connection,
                                    server.root(),
                                    selection,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  return extension->first_event;
}

}  // namespace

XCompositor::XCompositor(XServer& server)
    : server_(server),
      selection_(server.atom(compositorSelection)),
      firstEvent_(listenToOwners(server, selection_)),
      isRunning_(server.hasOwner(compositorSelection)),
      filter_([this](const XEvent& event) { seen(event); }) {}

Blending XCompositor::blending() const {
  if (!isRunning_) {
    return Blending::none;
  }
  return server_.hasProperty(server_.root(), blurRegion) ? Blending::blurred : Blending::clear;
}

void XCompositor::seen(const XEvent& event) {
  if (firstEvent_ == 0 || event.type != firstEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
    return;
  }
  const auto notice = event.as<xcb_xfixes_selection_notify_event_t>();
  const bool runs = notice.owner != XCB_WINDOW_NONE;
  if (notice.selection == selection_ && runs != isRunning_) {
    isRunning_ = runs;
    if (changed_) {
      changed_();
    }
  }
}

}  // namespace tolvane
