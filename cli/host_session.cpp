#include "cli/host_session.h"

#include <memory>
#include <variant>

#include "bridge/unavailable_services.h"
#include "universal/dispatch/universal_engine.h"

namespace tolvane {

HostSession::HostSession(std::function<void()> interrupted)
    : interrupt_(interrupted ? std::make_unique<Interrupt>(loop_, std::move(interrupted))
                             : nullptr),
      bridge_(messengers_.host(), loop_, unavailableServices(), UniversalEngine::completeEngine()),
      client_(messengers_.interface()) {}

void HostSession::listen(ChannelClient::EventHandler handler) {
  client_.onEvent(std::move(handler));
  call("ready", nullptr);
}

void HostSession::endWithin(EndingSignals::Duration limit, ExitStatus status) {
  if (interrupt_) {
    interrupt_->endWithin(limit, static_cast<int>(status));
  }
}

void HostSession::call(const std::string& method,
                       const Value& arguments,
                       const std::function<void(const ChannelError& error)>& failed) {
  client_.call(method, arguments, [failed](const ChannelReply& reply) {
    const auto* error = std::get_if<ChannelError>(&reply);
    if (error != nullptr && failed) {
      failed(*error);
    }
  });
}

}  // namespace tolvane
