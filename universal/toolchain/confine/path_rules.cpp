#include "universal/toolchain/confine/path_rules.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <string_view>

#include "universal/toolchain/confine/report.h"

namespace tolvane::confine::PathRules {

namespace {

// Spelled out, because Debian 12's headers end at version 2 of these rules.
constexpr std::uint64_t writeFile = 1U << 1;
constexpr std::uint64_t readFile = 1U << 2;
constexpr std::uint64_t readDirectory = 1U << 3;
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
  std::uint64_t rights = writeFile | readFile | readDirectory | removeDirectory | removeFile |
                         makeCharacterDevice | makeDirectory | makeRegular | makeSocket | makeFifo |
                         makeBlockDevice | makeSymbolicLink;
  rights |= version >= 2 ? moveBetweenFolders : 0;
  rights |= version >= 3 ? truncate : 0;
  rights |= version >= 5 ? controlDevice : 0;
  return rights;
}

Kernel::Answer addRule(int rules, const BelowPath& below) {
  return Kernel::call(SYS_landlock_add_rule, rules, ruleBelowPath, &below, 0);
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
  const Kernel::Answer rules = Kernel::call(SYS_landlock_create_ruleset, &ruleset, size, 0);
  Report::check(rules, "landlock_create_ruleset");
  return static_cast<int>(rules);
}

void allow(int rules, const char* path, std::uint64_t rights) {
  const Kernel::Answer place = Kernel::call(SYS_openat, AT_FDCWD, path, O_PATH | O_CLOEXEC);
  if (place < 0) {
    return;  // what cannot be reached can be neither read nor written
  }
  const BelowPath below = {rights, static_cast<std::int32_t>(place)};
  Kernel::Answer added = addRule(rules, below);
  if (added == -EINVAL) {
    // A file has no rights that only folders can have.
    added = addRule(rules, {rights & (readFile | writeFile | truncate), below.parent});
  }
  Report::check(added, path);
  Kernel::call(SYS_close, place);
}

/// Each place with all that is below it.
void allowReading(int rules, const Options& options) {
  for (char** word = options.readable; word + 1 < options.engine; ++word) {
    if (std::string_view(*word) == "--read") {
      allow(rules, *++word, readFile | readDirectory);
    }
  }
}

}  // namespace

int version() {
  constexpr unsigned askVersion = 1;
  const Kernel::Answer version = Kernel::call(SYS_landlock_create_ruleset, nullptr, 0, askVersion);
  return version < 0 ? 0 : static_cast<int>(version);
}

void apply(const Options& options, int version) {
  const int rules = createRuleset(version);
  const std::uint64_t every = everyRight(version);
  const std::uint64_t inside = every & ~(makeCharacterDevice | makeBlockDevice | controlDevice);
  for (const char* place : {options.root, options.sockets, options.cover}) {
    if (place != nullptr) {
      allow(rules, place, inside);
    }
  }
  allow(rules, "/dev/null", every & (readFile | writeFile | truncate));
  allowReading(rules, options);
  Report::check(Kernel::call(SYS_landlock_restrict_self, rules, 0), "landlock_restrict_self");
  Kernel::call(SYS_close, rules);
}

}  // namespace tolvane::confine::PathRules
