#pragma once

#include <string>

namespace tolvane {

/// How a desktop tells which action of the user started a program, so that the program's window may
/// come to the front. Both are empty when it does not.
struct Activation {
  std::string startupId;  ///< of the startup notification protocol: "..._TIME" and the X server's
                          ///< time in milliseconds
  std::string token;      ///< of the protocol xdg-activation

  /// What may tell the time of the action: a desktop that hands over the token alone makes it of
  /// the startup id where it runs on an X server. Empty when there is nothing.
  [[nodiscard]] const std::string& startNotice() const {
    return startupId.empty() ? token : startupId;
  }

  /// What this process was started with. To be read before Qt, which takes it out of the
  /// environment.
  [[nodiscard]] static Activation ofThisProcess();
};

}  // namespace tolvane
