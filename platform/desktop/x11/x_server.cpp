#include "platform/desktop/x11/x_server.h"

#include <cstring>

#include <QGuiApplication>
#include <xcb/xcb.h>

#include "platform/desktop/x11/x_event_filter.h"
#include "platform/desktop/x11/x_reply.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

// In 32-bit units; longer properties are of no use to us.
constexpr std::uint32_t longestProperty = 1024;
constexpr XAtom noAtom = XCB_ATOM_NONE;
constexpr XWindow noWindow = XCB_WINDOW_NONE;

constexpr const char* noServer = "tolvane needs an X server. Log in to an X11 session.";

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using OwnConnection = std::unique_ptr<xcb_connection_t, Disconnect>;

OwnConnection connected() {
  OwnConnection connection(xcb_connect(nullptr, nullptr));
  if (xcb_connection_has_error(connection.get()) != 0) {
    throw PlatformError(noServer);
  }
  return connection;
}

xcb_connection_t* connectionOfQt() {
  const auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (native == nullptr) {
    throw PlatformError(noServer);
  }
  return native->connection();
}

/// Xwayland itself is told from other servers only by the names of its screens, and not in every
/// version.
bool isWaylandSession() {
  const QByteArray kind = qgetenv("XDG_SESSION_TYPE");
  return kind == "wayland" || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

XWindow rootOf(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

xcb_get_property_cookie_t askProperty(xcb_connection_t* connection, XWindow window, XAtom name) {
  return xcb_get_property(
      connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
}

XReply<xcb_get_property_reply_t> answerOf(xcb_connection_t* connection,
                                          xcb_get_property_cookie_t asked) {
  return XReply<xcb_get_property_reply_t>(xcb_get_property_reply(connection, asked, nullptr));
}

std::vector<std::uint32_t> numbersIn(const XReply<xcb_get_property_reply_t>& reply) {
  if (!reply || reply->format != 32) {
    return {};
  }
  std::vector<std::uint32_t> numbers(reply->value_len);
  std::memcpy(
      numbers.data(), xcb_get_property_value(reply.get()), numbers.size() * sizeof(std::uint32_t));
  return numbers;
}

}  // namespace

/// A connection of its own, because the answer has to be waited for and Qt takes every event of
/// its connection.
class XServer::Clock {
 public:
  Clock() : connection_(connected()) {
    window_ = xcb_generate_id(connection_.get());
    // Window managers leave alone what is not theirs to manage.
    constexpr std::uint32_t isUnmanaged = 1;
    const std::array<std::uint32_t, 2> values = {isUnmanaged, XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(connection_.get(),
                      0,
                      window_,
                      rootOf(connection_.get()),
                      0,
                      0,
                      1,
                      1,
                      0,
                      XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                      values.data());
    xcb_flush(connection_.get());
  }

  [[nodiscard]] XTime now() const {
    // Appending nothing changes nothing, and is told with the time.
    xcb_change_property(connection_.get(),
                        XCB_PROP_MODE_APPEND,
                        window_,
                        XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING,
                        8,
                        0,
                        nullptr);
    xcb_flush(connection_.get());
    while (XReply<xcb_generic_event_t> event{xcb_wait_for_event(connection_.get())}) {
      if ((event->response_type & ~0x80U) != XCB_PROPERTY_NOTIFY) {
        continue;
      }
      const auto notice =
          XEvent{XCB_PROPERTY_NOTIFY, event.get()}.as<xcb_property_notify_event_t>();
      // KWin notes something of its own on each new window: what it tells of that is long ago.
      if (notice.atom == XCB_ATOM_WM_NAME) {
        return notice.time;
      }
    }
    return XCB_CURRENT_TIME;
  }

 private:
  OwnConnection connection_;
  XWindow window_ = 0;
};

XServer::XServer()
    : connection_(connectionOfQt()),
      root_(rootOf(connection_)),
      clock_(std::make_unique<Clock>()),
      isBelowWayland_(isWaylandSession()) {}

XServer::~XServer() = default;

void XServer::requireReachable() {
  connected();
}

XAtom XServer::atom(const std::string& name) const {
  const auto known = atoms_.find(name);
  if (known != atoms_.end()) {
    return known->second;
  }
  const auto cookie =
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
  const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
  return atoms_[name] = reply ? reply->atom : noAtom;
}

std::vector<std::uint32_t> XServer::numbers(XWindow window, const char* name) const {
  return numbersIn(answerOf(connection_, askProperty(connection_, window, atom(name))));
}

std::vector<std::vector<std::uint32_t>> XServer::numbersOfEach(const std::vector<XWindow>& windows,
                                                               const char* property) const {
  std::vector<xcb_get_property_cookie_t> questions;
  questions.reserve(windows.size());
  for (const XWindow window : windows) {
    questions.push_back(askProperty(connection_, window, atom(property)));
  }
  std::vector<std::vector<std::uint32_t>> answers;
  answers.reserve(windows.size());
  for (const xcb_get_property_cookie_t asked : questions) {
    answers.push_back(numbersIn(answerOf(connection_, asked)));
  }
  return answers;
}

std::string XServer::text(XWindow window, const char* name) const {
  const auto reply = answerOf(connection_, askProperty(connection_, window, atom(name)));
  if (!reply || reply->format != 8) {
    return {};
  }
  return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

bool XServer::hasProperty(XWindow window, const char* property) const {
  const auto reply = answerOf(connection_, askProperty(connection_, window, atom(property)));
  return reply && reply->type != XCB_ATOM_NONE;
}

void XServer::setNumbers(XWindow window,
                         const char* property,
                         const std::vector<std::uint32_t>& numbers) {
  xcb_change_property(connection_,
                      XCB_PROP_MODE_REPLACE,
                      window,
                      atom(property),
                      XCB_ATOM_CARDINAL,
                      32,
                      static_cast<std::uint32_t>(numbers.size()),
                      numbers.data());
}

void XServer::removeProperty(XWindow window, const char* property) {
  xcb_delete_property(connection_, window, atom(property));
}

XWindow XServer::activeWindow() const {
  const auto windows = numbers(root_, "_NET_ACTIVE_WINDOW");
  return windows.empty() ? noWindow : windows.front();
}

bool XServer::exists(XWindow window) const {
  const auto cookie = xcb_get_window_attributes(connection_, window);
  return XReply<xcb_get_window_attributes_reply_t>(
             xcb_get_window_attributes_reply(connection_, cookie, nullptr)) != nullptr;
}

std::optional<Point> XServer::origin(XWindow window) const {
  const auto cookie = xcb_translate_coordinates(connection_, window, root_, 0, 0);
  const XReply<xcb_translate_coordinates_reply_t> reply(
      xcb_translate_coordinates_reply(connection_, cookie, nullptr));
  return reply ? std::optional(
                     Point{static_cast<double>(reply->dst_x), static_cast<double>(reply->dst_y)})
               : std::nullopt;
}

std::optional<Size> XServer::size(XWindow window) const {
  const auto cookie = xcb_get_geometry(connection_, window);
  const XReply<xcb_get_geometry_reply_t> reply(
      xcb_get_geometry_reply(connection_, cookie, nullptr));
  return reply ? std::optional(
                     Size{static_cast<double>(reply->width), static_cast<double>(reply->height)})
               : std::nullopt;
}

std::vector<XWindow> XServer::windowsUnderPointer() const {
  std::vector<XWindow> windows;
  XWindow inner = root_;
  while (inner != noWindow) {
    windows.push_back(inner);
    const XReply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection_, xcb_query_pointer(connection_, inner), nullptr));
    inner = reply && reply->same_screen != 0 ? reply->child : noWindow;
  }
  return windows;
}

bool XServer::hasOwner(const char* selection) const {
  const auto cookie = xcb_get_selection_owner(connection_, atom(selection));
  const XReply<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(connection_, cookie, nullptr));
  return reply && reply->owner != noWindow;
}

void XServer::tellWindowManager(XWindow window,
                                const char* message,
                                const std::array<std::uint32_t, 5>& data) {
  xcb_client_message_event_t event = {};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom(message);
  std::memcpy(event.data.data32, data.data(), sizeof event.data.data32);
  xcb_send_event(connection_,
                 0,
                 root_,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(connection_);
}

XTime XServer::now() const {
  return clock_->now();
}

}  // namespace tolvane
