#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/capability.h>
#include <linux/vm_sockets.h>
#include <mqueue.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/ipc.h>
#include <sys/mount.h>
#include <sys/msg.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <unistd.h>

#include "tests/universal/toolchain/attack.h"

namespace tolvane::attacks {

namespace {

using enum Unconfined;

bool connects(const std::string& name) {
  const auto [address, length] = localAddress(name);
  return ::connect(::socket(AF_UNIX, SOCK_STREAM, 0),
                   reinterpret_cast<const sockaddr*>(&address),
                   length) == 0;
}

bool sends(int socket, const std::string& name) {
  const auto [address, length] = localAddress(name);
  return ::sendto(socket, "x", 1, 0, reinterpret_cast<const sockaddr*>(&address), length) == 1;
}

bool sendsFromPair(const Ground& ground) {
  int pair[2] = {-1, -1};
  return ::socketpair(AF_UNIX, SOCK_DGRAM, 0, pair) == 0 &&
         sends(pair[0], ground.outside + "/datagram");
}

sockaddr_in loopback(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

bool connectsTcp(const Ground& ground) {
  const sockaddr_in address = loopback(ground.port);
  return ::connect(::socket(AF_INET, SOCK_STREAM, 0),
                   reinterpret_cast<const sockaddr*>(&address),
                   sizeof address) == 0;
}

bool sendsUdp(const Ground&) {
  constexpr int nameServer = 53;
  const sockaddr_in address = loopback(nameServer);
  return ::sendto(::socket(AF_INET, SOCK_DGRAM, 0),
                  "x",
                  1,
                  0,
                  reinterpret_cast<const sockaddr*>(&address),
                  sizeof address) == 1;
}

bool makesSocket(int family, int type) {
  return ::socket(family, type, 0) >= 0;
}

bool clonesUser(const Ground&) {
  const long child = ::syscall(SYS_clone, CLONE_NEWUSER | SIGCHLD, nullptr, nullptr, nullptr, 0);
  if (child == 0) {
    ::_exit(0);
  }
  return child > 0;
}

bool clonesUserByNewCall(const Ground&) {
  struct {
    std::uint64_t flags = CLONE_NEWUSER;
    std::uint64_t unused[3] = {};
    std::uint64_t exitSignal = SIGCHLD;
    std::uint64_t rest[6] = {};
  } arguments;
  const long child = ::syscall(SYS_clone3, &arguments, sizeof arguments);
  if (child == 0) {
    ::_exit(0);
  }
  return child > 0;
}

/// getpid of the 32-bit system, whose numbers a filter of the 64-bit one would misread.
bool callsNarrow(const Ground&) {
  long result = 20;
  asm volatile("int $0x80" : "+a"(result) : : "memory", "r8", "r9", "r10", "r11");
  return result > 0;
}

bool usesKeyring(const Ground&) {
  constexpr int processKeyring = -2;
  return ::syscall(SYS_add_key, "user", "tolvane", "x", 1, processKeyring) >= 0;
}

bool ringsUp(const Ground&) {
  unsigned parameters[30] = {};
  return ::syscall(SYS_io_uring_setup, 1, parameters) >= 0;
}

/// Harmless to its receiver, if it comes through.
constexpr int harmless = SIGWINCH;

bool signalsThroughDescriptor(const Ground& ground) {
  const long process = ::syscall(SYS_pidfd_open, ground.victim, 0);
  return ::syscall(SYS_pidfd_send_signal, process, harmless, nullptr, 0) == 0;
}

bool queuesSignal(const Ground& ground) {
  return ::sigqueue(ground.victim, harmless, {}) == 0;
}

bool becomesOwner(const Ground& ground) {
  int pair[2] = {-1, -1};
  return ::socketpair(AF_UNIX, SOCK_STREAM, 0, pair) == 0 &&
         ::fcntl(pair[0], F_SETOWN, ground.victim) == 0;
}

bool becomesOwnerByRequest(const Ground& ground, unsigned long request) {
  int pair[2] = {-1, -1};
  return ::socketpair(AF_UNIX, SOCK_STREAM, 0, pair) == 0 &&
         ::ioctl(pair[0], request, &ground.victim) == 0;
}

/// Of a group of its own, where the kernel lets it have one: unconfined, nobody else is slowed.
bool setsPriorityOfGroup(const Ground&) {
  ::setpgid(0, 0);
  return ::setpriority(PRIO_PGRP, 0, 19) == 0;
}

bool setsDiskPriorityOfUser(const Ground&) {
  constexpr int ofUser = 3;          // IOPRIO_WHO_USER
  constexpr int noClass = 7 << 13U;  // the kernel finds that out first, so nobody is slowed
  return ::syscall(SYS_ioprio_set, ofUser, 0, noClass) == 0 || errno == EINVAL;
}

/// Itself, or a program that it starts: root's programs might get back what root has given up.
bool hasRightsOverTheMachine(const Ground&) {
  static_assert(CAP_SYS_ADMIN == 21);
  return std::system(
             "exec 2>&-; rights=$(sed -n 's/^CapPrm:[^0-9a-f]*//p' /proc/self/status); "
             "[ $((0x$rights >> 21 & 1)) = 1 ]") == 0;
}

bool opensTreeByNewCall(const Ground& ground) {
  constexpr long openTreeAttr = 467;
  return ::syscall(openTreeAttr, AT_FDCWD, ground.outside.c_str(), 0, nullptr, 0) >= 0;
}

bool writesMemory(const Ground& ground) {
  char byte = 0;
  iovec place = {&byte, 1};
  // A page that is not there fails with EFAULT, after access to the process was granted.
  return ::process_vm_writev(ground.victim, &place, 1, &place, 1, 0) == 1 || errno == EFAULT;
}

bool limits(const Ground& ground) {
  const rlimit none = {0, 0};
  return ::prlimit(ground.victim, RLIMIT_CORE, &none, nullptr) == 0;
}

bool setsAffinity(const Ground& ground) {
  cpu_set_t processors = {};
  return ::sched_getaffinity(0, sizeof processors, &processors) == 0 &&
         ::sched_setaffinity(ground.victim, sizeof processors, &processors) == 0;
}

bool setsMountWritable(const Ground&) {
  const std::uint64_t attributes[4] = {0, 1, 0, 0};
  return ::syscall(SYS_mount_setattr, AT_FDCWD, "/", 0, attributes, sizeof attributes) == 0;
}

}  // namespace

const std::vector<Attack>& onTheNetwork() {
  static const std::vector<Attack> table = {
      {"local socket", succeeds, [](const Ground& g) { return connects(g.outside + "/stream"); }},
      {"abstract socket", succeeds, [](const Ground& g) { return connects("@" + g.abstract); }},
      {"datagram socket",
       succeeds,
       [](const Ground& g) {
         return sends(::socket(AF_UNIX, SOCK_DGRAM, 0), g.outside + "/datagram");
       }},
      {"datagram pair", succeeds, sendsFromPair},
      {"TCP", succeeds, connectsTcp},
      {"UDP", succeeds, sendsUdp},
      {"TCP, version 6",
       dependsOnMachine,
       [](const Ground&) { return makesSocket(AF_INET6, SOCK_STREAM); }},
      {"netlink", succeeds, [](const Ground&) { return makesSocket(AF_NETLINK, SOCK_RAW); }},
      {"virtual machine socket",
       dependsOnMachine,
       [](const Ground&) { return makesSocket(AF_VSOCK, SOCK_STREAM); }},
      {"io_uring", dependsOnMachine, ringsUp},
  };
  return table;
}

const std::vector<Attack>& onTheSystem() {
  static const std::vector<Attack> table = {
      {"user namespace",
       dependsOnMachine,
       [](const Ground&) { return ::unshare(CLONE_NEWUSER) == 0; }},
      {"cloned user namespace", dependsOnMachine, clonesUser},
      {"cloned user namespace, new call", dependsOnMachine, clonesUserByNewCall},
      {"32-bit call", dependsOnMachine, callsNarrow},
      {"keyring", dependsOnMachine, usesKeyring},
      {"message queue",
       succeeds,
       [](const Ground&) {
         const int queue = ::msgget(IPC_PRIVATE, IPC_CREAT | 0600);
         return queue >= 0 && ::msgctl(queue, IPC_RMID, nullptr) == 0;
       }},
      {"shared memory",
       succeeds,
       [](const Ground&) {
         const int memory = ::shmget(IPC_PRIVATE, 4096, IPC_CREAT | 0600);
         return memory >= 0 && ::shmctl(memory, IPC_RMID, nullptr) == 0;
       }},
      {"semaphore",
       succeeds,
       [](const Ground&) {
         const int semaphore = ::semget(IPC_PRIVATE, 1, IPC_CREAT | 0600);
         return semaphore >= 0 && ::semctl(semaphore, 0, IPC_RMID) == 0;
       }},
      {"POSIX queue",
       dependsOnMachine,
       [](const Ground&) {
         return ::mq_open("/tolvane-attack", O_CREAT | O_RDWR, 0600, nullptr) >= 0 &&
                ::mq_unlink("/tolvane-attack") == 0;
       }},
      {"kill", succeeds, [](const Ground& g) { return ::kill(g.victim, harmless) == 0; }},
      {"kill the host", succeeds, [](const Ground& g) { return ::kill(g.host, harmless) == 0; }},
      {"tkill",
       succeeds,
       [](const Ground& g) { return ::syscall(SYS_tkill, g.victim, harmless) == 0; }},
      {"tgkill",
       succeeds,
       [](const Ground& g) { return ::syscall(SYS_tgkill, g.victim, g.victim, harmless) == 0; }},
      {"sigqueue", succeeds, queuesSignal},
      {"pidfd_send_signal", succeeds, signalsThroughDescriptor},
      {"signal owner", succeeds, becomesOwner},
      {"signal owner by request",
       succeeds,
       [](const Ground& g) { return becomesOwnerByRequest(g, 0x8901); }},  // FIOSETOWN
      {"signal group by request",
       succeeds,
       [](const Ground& g) { return becomesOwnerByRequest(g, 0x8902); }},  // SIOCSPGRP
      {"ptrace",
       dependsOnMachine,
       [](const Ground& g) { return ::ptrace(PTRACE_SEIZE, g.victim, nullptr, nullptr) == 0; }},
      {"write memory", dependsOnMachine, writesMemory},
      {"limits of others", succeeds, limits},
      {"priority of others",
       succeeds,
       [](const Ground& g) {
         return ::setpriority(PRIO_PROCESS, static_cast<id_t>(g.victim), 10) == 0;
       }},
      {"priority of a group", succeeds, setsPriorityOfGroup},
      {"disk priority of a user", succeeds, setsDiskPriorityOfUser},
      {"processors of others", succeeds, setsAffinity},
      {"own session", succeeds, [](const Ground&) { return ::setsid() >= 0; }},
      {"own group", succeeds, [](const Ground&) { return ::setpgid(0, 0) == 0; }},
      {"mount",
       dependsOnMachine,
       [](const Ground& g) { return ::mount("none", g.inside.c_str(), "tmpfs", 0, nullptr) == 0; }},
      {"remount",
       dependsOnMachine,
       [](const Ground&) {
         return ::mount(nullptr, "/", nullptr, MS_REMOUNT | MS_BIND, nullptr) == 0;
       }},
      {"open_tree_attr", dependsOnMachine, opensTreeByNewCall},
      {"mount_setattr", dependsOnMachine, setsMountWritable},
      {"rights over the machine", succeedsAsRoot, hasRightsOverTheMachine},
      {"change root",
       succeedsAsRoot,
       [](const Ground& g) { return ::chroot(g.inside.c_str()) == 0; }},
  };
  return table;
}

}  // namespace tolvane::attacks
