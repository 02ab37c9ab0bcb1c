// A host of its own for one engine run, where a test needs to kill the host, change its user or
// give it things that must not reach the engine.
//
// usage: toolchain_host run LEVEL NEWEST-RULES FOLDER NAME [ARGUMENT]...
//        toolchain_host attack LEVEL NEWEST-RULES FOLDER NAME
// The engine stands beside this program; FOLDER is the workspace. LEVEL is a number of
// ConfinementLevel, or "none" to run an attacker unconfined. Prints what the engine printed, or the
// failure.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <netinet/in.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

#include "tests/universal/toolchain/attack.h"
#include "universal/toolchain/local_toolchain.h"

namespace {

namespace fs = std::filesystem;
using namespace tolvane;

constexpr double timeout = 60;  // seconds

struct Order {
  std::string level;
  std::string newestRules;
  fs::path folder;
  std::string name;
  std::vector<std::string> arguments;
};

fs::path ownFolder() {
  return fs::read_symlink("/proc/self/exe").parent_path();
}

int runConfined(const Order& order, EngineRun run) {
  const Confinement confinement = Confinement::firstThatHolds(
      {static_cast<ConfinementLevel>(std::stoi(order.level))}, std::stoi(order.newestRules));
  EngineLocations locations = {{ownFolder()}};
  const LocalToolchain toolchain(locations, &confinement);
  run.name = order.name;
  run.timeout = timeout;
  const Bytes printed = toolchain.run(run, CancellationToken());
  std::cout.write(reinterpret_cast<const char*>(printed.data()),
                  static_cast<std::streamsize>(printed.size()));
  return EXIT_SUCCESS;
}

int listenTo(const std::string& name, int type) {
  const auto [address, length] = attacks::localAddress(name);
  const int socket = ::socket(AF_UNIX, type | SOCK_CLOEXEC, 0);
  if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), length) != 0) {
    throw std::runtime_error("cannot bind " + name);
  }
  ::listen(socket, 1);
  return socket;
}

/// @return the port.
int listenToTcp() {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (::bind(socket, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
      ::listen(socket, 1) != 0 ||
      ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    throw std::runtime_error("cannot listen");
  }
  return ntohs(address.sin_port);
}

std::string openTerminal() {
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  char name[64] = {};
  if (::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0 ||
      ::ptsname_r(terminal, name, sizeof name) != 0) {
    throw std::runtime_error("no terminal");
  }
  return name;
}

/// A process of the same user that does nothing.
pid_t startVictim() {
  const pid_t host = ::getpid();
  const pid_t victim = ::fork();
  if (victim == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    while (::getppid() == host) {
      ::pause();
    }
    ::_exit(0);
  }
  return victim;
}

/// Everything that an attacker could reach, laid out in the folder.
std::vector<std::string> layOut(const fs::path& folder) {
  const fs::path outside = folder / "outside";
  fs::create_directories(folder / "inside");
  fs::create_directories(folder / "log");
  fs::create_directories(outside);
  for (const char* name : {"target", "spare", "stolen", "doomed", "secret"}) {
    ::close(::creat((outside / name).c_str(), 0600));
  }
  ::mkfifo((outside / "fifo").c_str(), 0600);
  ::open((outside / "fifo").c_str(), O_RDWR | O_CLOEXEC);  // somebody reads it
  listenTo(outside / "stream", SOCK_STREAM);
  listenTo(outside / "datagram", SOCK_DGRAM);
  const std::string abstract = "tolvane-" + std::to_string(::getpid());
  listenTo("@" + abstract, SOCK_STREAM);
  // Left open for whoever inherits them.
  ::open((outside / "target").c_str(), O_WRONLY);
  ::open(outside.c_str(), O_DIRECTORY);
  return {folder / "inside",
          outside,
          openTerminal(),
          abstract,
          std::to_string(listenToTcp()),
          std::to_string(::getpid()),
          std::to_string(startVictim())};
}

int attack(const Order& order) {
  EngineRun run;
  run.arguments = layOut(order.folder);
  run.in = order.folder / "log";
  run.writableRoot = order.folder / "inside";
  // As a document is: what can be read must still be safe from every change.
  run.inputs = {order.folder / "outside/target"};
  if (order.level != "none") {
    return runConfined(order, run);
  }
  // As root, mounts would succeed: then at least nowhere else.
  if (::geteuid() == 0 && (::unshare(CLONE_NEWNS) != 0 ||
                           ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)) {
    throw std::runtime_error("no mounts of its own");
  }
  std::string command = "'" + (ownFolder() / order.name).string() + "'";
  for (const std::string& argument : run.arguments) {
    command += " '" + argument + "'";
  }
  return std::system(command.c_str());
}

}  // namespace

int main(int count, char** arguments) try {
  if (count < 6) {
    return EXIT_FAILURE;
  }
  const Order order = {
      arguments[2], arguments[3], arguments[4], arguments[5], {arguments + 6, arguments + count}};
  if (std::string(arguments[1]) == "attack") {
    return attack(order);
  }
  EngineRun run;
  run.in = order.folder;
  run.arguments = order.arguments;
  return runConfined(order, run);
} catch (const std::exception& error) {
  std::cout << error.what() << '\n';
  return EXIT_FAILURE;
}
