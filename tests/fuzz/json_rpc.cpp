#include "bridge/bridge.h"
#include "bridge/json_rpc_host.h"
#include "bridge/unavailable_services.h"
#include "platform/threads/event_loop.h"
#include "tests/fuzz/reader.h"

namespace {

/// Lines of JSON that a host without a desktop wrote, each of which must be a message.
class Conversation {
 public:
  void receive(std::string_view line) { host_.receive(line); }

  /// Until the worker is done and the host has quit.
  void end() {
    host_.endOfInput();
    loop_.run();
  }

 private:
  tolvane::EventLoop loop_;
  tolvane::MessengerPair messengers_;
  tolvane::Bridge bridge_{messengers_.host(),
                          loop_,
                          tolvane::unavailableServices(),
                          tolvane::ConversionEngine([](const auto&, const auto&) {
                            return std::vector<std::filesystem::path>();
                          })};
  tolvane::JsonRpcHost host_{
      bridge_,
      messengers_.interface(),
      [](const std::string& line) { require(line.starts_with('{') && line.ends_with('}')); },
      [this] { loop_.quit(); }};
};

}  // namespace

void read(tolvane::BytesView input) {
  Conversation conversation;
  std::string_view text = tolvane::asText(input);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    conversation.receive(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  conversation.end();
}
