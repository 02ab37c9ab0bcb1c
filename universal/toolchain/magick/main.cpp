// tolvane-magick: the command line of ImageMagick 7 ("magick", "magick identify", "magick montage")
// carried out by version 6, whose programs have these names on Debian and its kin. Plain "convert"
// may be something else.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <strings.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

/// Our limits and bans instead of the distribution's, which stops at 16,000 pixels a side.
std::string policyFolder() {
  std::error_code ignored;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
  return (folder / "magick").string();
}

bool endsInAvif(std::string_view file) {
  constexpr std::string_view extension = ".avif";
  return file.size() > extension.size() &&
         ::strcasecmp(file.substr(file.size() - extension.size()).data(), extension.data()) == 0;
}

/// Those of this process and constants; a null at the end.
using Arguments = std::vector<char*>;

void insert(Arguments& arguments, Arguments::iterator place, std::span<std::string> added) {
  Arguments pointers;
  for (std::string& argument : added) {
    pointers.push_back(argument.data());
  }
  arguments.insert(place, pointers.begin(), pointers.end());
}

/// Version 6 leaves the transparency out of AVIF files and what was transparent black.
void flattenAvif(Arguments& arguments) {
  static std::array<std::string, 6> flattening = {
      "-background", "white", "-alpha", "remove", "-alpha", "off"};
  const auto output = arguments.end() - 2;
  if (endsInAvif(*output)) {
    insert(arguments, output, flattening);
  }
}

bool contains(const Arguments& arguments, std::string_view option) {
  return std::find(arguments.begin(), arguments.end() - 1, option) != arguments.end() - 1;
}

/// Version 6 turns a picture (orientation 7) without its canvas, from which crops are measured, and
/// leaves the black of CMYK as it is where it draws: what was to be hidden shows.
void prepareTurned(Arguments& arguments) {
  static std::array<std::string, 3> preparing = {"+repage", "-colorspace", "sRGB"};
  const bool draws = contains(arguments, "-draw") || contains(arguments, "-annotate");
  const auto last = arguments.end() - 1;
  const auto turning = std::find(arguments.begin(), last, std::string_view("-auto-orient"));
  if (turning != last) {
    insert(arguments, turning + 1, std::span(preparing).first(draws ? 3 : 1));
  }
}

/// Without "magick" and, where there is one, the tool's name.
struct Invocation {
  std::string program;
  Arguments arguments;
};

Invocation translated(Arguments arguments) {
  const std::string_view tool = arguments.size() > 2 ? arguments[1] : "";
  if (tool == "identify" || tool == "montage") {
    arguments.erase(arguments.begin());
    return {"/usr/bin/" + std::string(tool) + "-im6.q16", std::move(arguments)};
  }
  prepareTurned(arguments);
  flattenAvif(arguments);
  return {"/usr/bin/convert-im6.q16", std::move(arguments)};
}

}  // namespace

int main(int count, char** arguments) {
  constexpr int cannotRun = 127;
  constexpr int keep = 0;  // the caller's own choice of a policy
  ::setenv("MAGICK_CONFIGURE_PATH", policyFolder().c_str(), keep);
  const Invocation invocation = translated({arguments, arguments + count + 1});
  ::execv(invocation.program.c_str(), invocation.arguments.data());
  std::perror(invocation.program.c_str());
  return cannotRun;
}
