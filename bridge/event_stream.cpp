#include "bridge/event_stream.h"

#include <utility>

namespace tolvane {

void EventStream::send(std::string_view type, Value::Map payload) const {
  if (!isOpen_) {
    return;
  }
  payload["version"] = 1;
  payload["type"] = type;
  channel_.invoke(eventMethod, std::move(payload), [](const ChannelReply&) {});
}

}  // namespace tolvane
