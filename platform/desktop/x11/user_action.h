#pragma once

#include <string>

#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// An action of the user that another program tells us of. While it lives, windows show up as what
/// the user asked for at its time: XServer::userTime(). Main thread only.
class UserAction {
 public:
  /// @param server not owned; outlives this object.
  /// @param startupId ends in "_TIME" and the server's time in decimal. Any other, and one that is
  ///   older than a start takes, tells of no action: programs inherit the one of their terminal.
  UserAction(XServer& server, const std::string& startupId);
  ~UserAction();
  UserAction(const UserAction&) = delete;
  UserAction& operator=(const UserAction&) = delete;

 private:
  XServer& server_;
};

}  // namespace tolvane
