#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "bridge/bridge.h"
#include "bridge/channel_client.h"
#include "platform/threads/event_loop.h"
#include "tests/support/recording_services.h"

namespace tolvane::support {

/// A bridge with a recording desktop, driven through the channel. The action "universal" runs
/// `runner_`, on the worker.
class BridgeFixture : public ::testing::Test {
 protected:
  BridgeFixture() {
    client_.onEvent([this](const Value::Map& event) {
      events_.emplace_back(event);
      loop_.quit();
    });
  }

  /// Waits for the answer, also when it comes later.
  ChannelReply call(const std::string& method, const Value& arguments = {}) {
    std::optional<ChannelReply> answer;
    client_.call(method, arguments, [this, &answer](const ChannelReply& reply) {
      answer = reply;
      loop_.quit();
    });
    runUntil([&answer] { return answer.has_value(); });
    return *answer;
  }

  /// Every condition that a test waits for is met by an event, a reply or whenWorkIsDone(): each
  /// ends one run of the loop.
  void runUntil(const std::function<bool()>& isMet) {
    while (!isMet()) {
      loop_.run();
    }
  }

  /// Lets the worker and the main thread come to the end of what they have.
  void finishEverything() {
    bool isDone = false;
    bridge_->whenWorkIsDone([this, &isDone] {
      isDone = true;
      loop_.quit();
    });
    runUntil([&isDone] { return isDone; });
  }

  Value::Map jobArguments(const std::string& id) const {
    return {{"id", id}, {"action", "universal"}, {"inputs", Value::List{"/in/a", "/in/b"}}};
  }

  EventLoop loop_;
  DesktopRecord record_;
  MessengerPair messengers_;
  ConversionEngine::UniversalRunner runner_;
  std::unique_ptr<Bridge> bridge_ = std::make_unique<Bridge>(
      messengers_.host(),
      loop_,
      recordingServices(record_),
      ConversionEngine(
          [this](const ConversionEngine& base, const Job& job) { return runner_(base, job); }));
  ChannelClient client_{messengers_.interface()};
  std::vector<Value> events_;
};

}  // namespace tolvane::support
