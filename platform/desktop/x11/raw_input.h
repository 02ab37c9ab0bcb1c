#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "platform/desktop/x11/x_event_filter.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// Presses of the pointer's buttons, wherever they go (XInput 2.2). Events go on to where they
/// went; nobody is listened to while there is no listener. Main thread only.
class RawInput {
 public:
  /// @param button what the user has it stand for: 1 primary, 2 middle, 3 secondary.
  using Handler = std::function<void(std::uint32_t button)>;

  /// Ends a subscription when destroyed; must not outlive the input.
  class Listener {
   public:
    Listener(RawInput& input, std::uint64_t id) : input_(input), id_(id) {}
    ~Listener() { input_.remove(id_); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

   private:
    RawInput& input_;
    std::uint64_t id_;
  };

  /// @param server not owned; outlives this object.
  explicit RawInput(XServer& server);

  /// Whether the server has XInput 2.2: with an older one, presses that reach a client which holds
  /// the pointer would be missed.
  [[nodiscard]] bool isAvailable() const { return opcode_ != 0; }

  /// @param handler may end its own subscription.
  [[nodiscard]] std::unique_ptr<Listener> listen(Handler handler);

 private:
  void remove(std::uint64_t id);
  void selectEvents();
  void seen(const XEvent& event);
  void tell(std::uint32_t button);

  XServer& server_;
  std::uint8_t opcode_;  // of the extension; 0 without it
  std::map<std::uint64_t, std::shared_ptr<const Handler>> handlers_;
  std::uint64_t lastId_ = 0;
  XEventFilter filter_;
};

}  // namespace tolvane
