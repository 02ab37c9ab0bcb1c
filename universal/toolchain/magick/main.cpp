// tolvane-magick: the command line of ImageMagick 7 ("magick", "magick identify", "magick montage")
// carried out by version 6, whose programs have these names on Debian and its kin. Plain "convert"
// may be something else.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace {

/// Our limits and bans instead of the distribution's, which stops at 16,000 pixels a side.
std::string policyFolder() {
  std::error_code ignored;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
  return (folder / "magick").string();
}

/// Without "magick" and, where there is one, the tool's name.
struct Invocation {
  std::string program;
  char** arguments;
};

Invocation translated(char** arguments) {
  const std::string_view tool = arguments[1] == nullptr ? "" : arguments[1];
  if (tool == "identify" || tool == "montage") {
    return {"/usr/bin/" + std::string(tool) + "-im6.q16", arguments + 1};
  }
  return {"/usr/bin/convert-im6.q16", arguments};
}

}  // namespace

int main(int, char** arguments) {
  constexpr int cannotRun = 127;
  constexpr int keep = 0;  // the caller's own choice of a policy
  ::setenv("MAGICK_CONFIGURE_PATH", policyFolder().c_str(), keep);
  const Invocation invocation = translated(arguments);
  ::execv(invocation.program.c_str(), invocation.arguments);
  std::perror(invocation.program.c_str());
  return cannotRun;
}
