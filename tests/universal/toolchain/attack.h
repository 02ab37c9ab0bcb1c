#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>
#include <utility>
#include <vector>

namespace tolvane::attacks {

/// What the attacks aim at; its makers see to it that every target could be reached unconfined.
struct Ground {
  std::string inside;    ///< the writable root
  std::string outside;   ///< holds "target", "fifo", "stream" and "datagram"
  std::string terminal;  ///< the path of a terminal
  std::string abstract;  ///< the name of a listening abstract socket
  int port = 0;          ///< a listening TCP port of this machine
  pid_t host = 0;
  pid_t victim = 0;  ///< a process of the same user

  [[nodiscard]] std::string target() const { return outside + "/target"; }
};

/// @param name a leading '@' stands for the zero byte of abstract names.
inline std::pair<sockaddr_un, socklen_t> localAddress(const std::string& name) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::copy(name.begin(), name.end(), address.sun_path);
  if (name.front() == '@') {
    address.sun_path[0] = '\0';
  }
  return {address, static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size())};
}

/// Where an attack has to succeed when nothing is confined; otherwise it would prove nothing.
enum class Unconfined { succeeds, succeedsAsRoot, dependsOnMachine };

struct Attack {
  const char* name;
  Unconfined control;
  bool (*succeeds)(const Ground& ground);
};

[[nodiscard]] const std::vector<Attack>& onFiles();
[[nodiscard]] const std::vector<Attack>& onMetadata();
[[nodiscard]] const std::vector<Attack>& onTheNetwork();
[[nodiscard]] const std::vector<Attack>& onTheSystem();

}  // namespace tolvane::attacks
