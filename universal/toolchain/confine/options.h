#pragma once

#include <optional>
#include <sys/types.h>

namespace tolvane::confine {

/// What happens to calls that change permissions, owners, times and extended attributes.
enum class Metadata {
  ruled,    // mounts keep them inside the writable places
  refused,  // nothing else keeps them there, so nothing may make them
};

/// What the helper was asked to do.
struct Options {
  std::optional<pid_t> host;            // --supervise: stop everything when this process ends
  bool confines = true;                 // --delegate: the program that is started confines
  bool ownMounts = false;               // --own-mounts
  Metadata metadata = Metadata::ruled;  // --refuse-metadata
  int newestPathRules = 1000;     // --path-rules-at-most: behaves as on a kernel of that version
  const char* folder = ".";       // --folder: the working directory
  const char* root = nullptr;     // --root: may be written
  const char* sockets = nullptr;  // --sockets: may be written and hold sockets; null for none
  const char* cover = nullptr;    // --cover: where the socket folder is shown as well
  int memory = 0;                 // --memory: MiB of each process; 0: as inherited
  int fileSize = 0;               // --file-size: MiB of each file; 0: as inherited
  char** readable = nullptr;  // where the arguments begin, among which each --read names a place
  char** engine = nullptr;    // what follows --, ended by a null pointer
};

/// Ends the process with a report when the arguments make no sense.
[[nodiscard]] Options readOptions(char** arguments);

}  // namespace tolvane::confine
