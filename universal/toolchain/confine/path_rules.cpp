#include "universal/toolchain/confine/path_rules.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "universal/toolchain/confine/report.h"

namespace tolvane::confine::PathRules {

namespace {

// Spelled out, because Debian 12's headers end at version 2 of these rules.
constexpr std::uint64_t writeFile = 1U << 1;
constexpr std::uint64_t removeDirectory = 1U << 4;
constexpr std::uint64_t removeFile = 1U << 5;
constexpr std::uint64_t makeCharacterDevice = 1U << 6;
constexpr std::uint64_t makeDirectory = 1U << 7;
constexpr std::uint64_t makeRegular = 1U << 8;
constexpr std::uint64_t makeSocket = 1U << 9;
constexpr std::uint64_t makeFifo = 1U << 10;
constexpr std::uint64_t makeBlockDevice = 1U << 11;
constexpr std::uint64_t makeSymbolicLink = 1U << 12;
constexpr std::uint64_t moveBetweenFolders = 1U << 13;  // version 2
constexpr std::uint64_t truncate = 1U << 14;            // version 3
constexpr std::uint64_t controlDevice = 1U << 15;       // version 5
constexpr std::uint64_t bindAndConnect = 3;             // version 4
constexpr std::uint64_t abstractSocketsAndSignals = 3;  // version 6

struct Ruleset {
  std::uint64_t handledPathRights;
  std::uint64_t handledNetworkRights;
  std::uint64_t scopes;
};

struct __attribute__((packed)) BelowPath {
  std::uint64_t allowed;
  std::int32_t parent;
};

constexpr int ruleBelowPath = 1;

std::uint64_t everyRight(int version) {
  std::uint64_t rights = writeFile | removeDirectory | removeFile | makeCharacterDevice |
                         makeDirectory | makeRegular | makeSocket | makeFifo | makeBlockDevice |
                         makeSymbolicLink;
  rights |= version >= 2 ? moveBetweenFolders : 0;
  rights |= version >= 3 ? truncate : 0;
  rights |= version >= 5 ? controlDevice : 0;
  return rights;
}

int createRuleset(int version) {
  const Ruleset ruleset = {everyRight(version),
                           version >= 4 ? bindAndConnect : 0,
                           version >= 6 ? abstractSocketsAndSignals : 0};
  // An older kernel refuses a structure that is longer than its own.
  std::size_t size = sizeof(std::uint64_t);
  if (version >= 6) {
    size = sizeof(Ruleset);
  } else if (version >= 4) {
    size = 2 * sizeof(std::uint64_t);
  }
  const long rules = ::syscall(SYS_landlock_create_ruleset, &ruleset, size, 0);
  Report::check(rules, "landlock_create_ruleset");
  return static_cast<int>(rules);
}

void allow(int rules, const std::string& path, std::uint64_t rights) {
  const int place = ::open(path.c_str(), O_PATH | O_CLOEXEC);
  if (place < 0 && errno == ENOENT) {
    return;  // what is not there cannot be written anyway
  }
  Report::check(place, path);
  struct stat status = {};
  Report::check(::fstat(place, &status), path);
  if (!S_ISDIR(status.st_mode)) {
    rights &= writeFile | truncate;
  }
  const BelowPath below = {rights, place};
  Report::check(::syscall(SYS_landlock_add_rule, rules, ruleBelowPath, &below, 0), path);
  ::close(place);
}

}  // namespace

int version() {
  constexpr unsigned askVersion = 1;
  const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, askVersion);
  return static_cast<int>(std::max(version, 0L));
}

void apply(const Options& options, int version) {
  const int rules = createRuleset(version);
  const std::uint64_t every = everyRight(version);
  const std::uint64_t inside = every & ~(makeCharacterDevice | makeBlockDevice | controlDevice);
  for (const std::string& place : {options.root, options.sockets, options.cover}) {
    if (!place.empty()) {
      allow(rules, place, inside);
    }
  }
  allow(rules, "/dev/null", every & (writeFile | truncate));
  Report::check(::syscall(SYS_landlock_restrict_self, rules, 0), "landlock_restrict_self");
  ::close(rules);
}

}  // namespace tolvane::confine::PathRules
