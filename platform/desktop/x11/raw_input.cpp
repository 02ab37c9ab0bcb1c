#include "platform/desktop/x11/raw_input.h"

#include <utility>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include "platform/desktop/x11/x_reply.h"

namespace tolvane {

namespace {

std::uint8_t opcodeOfInput(xcb_connection_t* connection) {
  constexpr std::uint16_t major = 2;
  constexpr std::uint16_t minor = 2;
  const auto* extension = xcb_get_extension_data(connection, &xcb_input_id);
  if (extension == nullptr || extension->present == 0) {
    return 0;
  }
  const auto cookie = xcb_input_xi_query_version(connection, major, minor);
  const XReply<xcb_input_xi_query_version_reply_t> version(
      xcb_input_xi_query_version_reply(connection, cookie, nullptr));
  const bool isEnough =
      version && (version->major_version > major ||
                  (version->major_version == major && version->minor_version >= minor));
  return isEnough ? extension->major_opcode : std::uint8_t{0};
}

/// Raw events tell which button of the device was pressed.
/// @return what the user has it stand for; 0 for nothing.
std::uint32_t meaningOf(std::uint32_t button, xcb_connection_t* connection) {
  const auto cookie = xcb_get_pointer_mapping(connection);
  const XReply<xcb_get_pointer_mapping_reply_t> mapping(
      xcb_get_pointer_mapping_reply(connection, cookie, nullptr));
  const bool isMapped = mapping && button > 0 && button <= mapping->map_len;
  return isMapped ? xcb_get_pointer_mapping_map(mapping.get())[button - 1] : button;
}

}  // namespace

RawInput::RawInput(XServer& server)
    : server_(server),
      opcode_(opcodeOfInput(server.connection())),
      filter_([this](const XEvent& event) { seen(event); }) {}

std::unique_ptr<RawInput::Listener> RawInput::listen(Handler handler) {
  handlers_[++lastId_] = std::make_shared<const Handler>(std::move(handler));
  selectEvents();
  return std::make_unique<Listener>(*this, lastId_);
}

void RawInput::remove(std::uint64_t id) {
  handlers_.erase(id);
  selectEvents();
}

void RawInput::selectEvents() {
  if (!isAvailable()) {
    return;
  }
  struct {
    xcb_input_event_mask_t head;
    std::uint32_t mask;
  } selection = {{XCB_INPUT_DEVICE_ALL_MASTER, 1}, 0};
  if (!handlers_.empty()) {
    selection.mask = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
  }
  xcb_input_xi_select_events(server_.connection(), server_.root(), 1, &selection.head);
  xcb_flush(server_.connection());
}

void RawInput::seen(const XEvent& event) {
  if (event.type != XCB_GE_GENERIC || handlers_.empty()) {
    return;
  }
  const auto generic = event.as<xcb_ge_generic_event_t>();
  if (generic.extension != opcode_) {
    return;
  }
  if (generic.event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
    const std::uint32_t button = event.as<xcb_input_raw_button_press_event_t>().detail;
    const std::uint32_t meaning = meaningOf(button, server_.connection());
    if (meaning != 0) {
      tell(meaning);
    }
  }
}

void RawInput::tell(std::uint32_t button) {
  // Copied, because a handler may end its own subscription.
  std::vector<std::shared_ptr<const Handler>> handlers;
  for (const auto& [id, handler] : handlers_) {
    handlers.push_back(handler);
  }
  for (const auto& handler : handlers) {
    (*handler)(button);
  }
}

}  // namespace tolvane
