#include "universal/toolchain/confine/options.h"

#include <cerrno>
#include <string_view>

#include "universal/toolchain/confine/decimal.h"
#include "universal/toolchain/confine/report.h"

namespace tolvane::confine {

namespace {

[[noreturn]] void refuse(std::string_view argument) {
  Report::fail(EINVAL, argument);
}

bool readFlag(std::string_view name, Options& options) {
  if (name == "--delegate") {
    options.confines = false;
  } else if (name == "--own-mounts") {
    options.ownMounts = true;
  } else if (name == "--refuse-metadata") {
    options.metadata = Metadata::refused;
  } else {
    return false;
  }
  return true;
}

void readValue(std::string_view name, const char* value, Options& options) {
  if (name == "--supervise") {
    options.host = Decimal::read(value);
  } else if (name == "--path-rules-at-most") {
    options.newestPathRules = Decimal::read(value);
  } else if (name == "--folder") {
    options.folder = value;
  } else if (name == "--root") {
    options.root = value;
  } else if (name == "--sockets") {
    options.sockets = value;
  } else if (name == "--cover") {
    options.cover = value;
  } else if (name == "--memory") {
    options.memory = Decimal::read(value);
  } else if (name == "--file-size") {
    options.fileSize = Decimal::read(value);
  } else if (name == "--read") {
    // Any number of them, and no memory to keep them in: they are read from the arguments again.
  } else {
    refuse(name);
  }
}

}  // namespace

Options readOptions(char** arguments) {
  Options options;
  options.readable = arguments + 1;
  for (char** next = arguments + 1; *next != nullptr; ++next) {
    const std::string_view name = *next;
    if (name == "--") {
      options.engine = next + 1;
      break;
    }
    if (!readFlag(name, options)) {
      if (next[1] == nullptr) {
        refuse(name);
      }
      readValue(name, *++next, options);
    }
  }
  if (options.engine == nullptr || *options.engine == nullptr) {
    refuse("no engine given");
  }
  return options;
}

}  // namespace tolvane::confine
