// tolvane-magick: the command line of ImageMagick 7 ("magick", "magick identify", "magick montage")
// carried out by version 6, whose programs have these names on Debian and its kin. Plain "convert"
// may be something else.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
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

bool hasExtension(std::string_view file, std::string_view extension) {
  return file.size() > extension.size() &&
         ::strncasecmp(file.substr(file.size() - extension.size()).data(),
                       extension.data(),
                       extension.size()) == 0;
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
  if (hasExtension(*output, ".avif")) {
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
  std::string policyFolders = policyFolder();
};

/// @return the picture that is read, which follows the limits; the end when there is none.
Arguments::iterator inputOf(Arguments& arguments) {
  constexpr std::ptrdiff_t limitLength = 3;
  const auto output = arguments.end() - 2;
  auto place = arguments.begin() + 1;
  while (output - place > limitLength && *place == std::string_view("-limit")) {
    place += limitLength;
  }
  return place < output ? place : arguments.end();
}

bool becomesStandardInput(const std::string& file) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  const bool isOpen = descriptor >= 0 && ::dup2(descriptor, STDIN_FILENO) >= 0;
  if (descriptor > STDIN_FILENO) {
    ::close(descriptor);
  }
  return isOpen;
}

/// Version 6 hands SVG to other programs, which are banned. Its own reader draws what files the
/// picture names, too; so it has a policy under which it opens none, not even the picture.
void drawSvg(Invocation& invocation) {
  static std::array<std::string, 3> drawing = {"-background", "none", "msvg:-[0]"};
  constexpr std::string_view firstOnly = "[0]";
  const auto input = inputOf(invocation.arguments);
  if (input == invocation.arguments.end()) {
    return;
  }
  std::string file = *input;
  if (file.ends_with(firstOnly)) {
    file.resize(file.size() - firstOnly.size());
  }
  if (hasExtension(file, ".svg") && becomesStandardInput(file)) {
    insert(invocation.arguments, invocation.arguments.erase(input), drawing);
    invocation.policyFolders += ":" + policyFolder() + "/svg";
  }
}

Invocation translated(Arguments arguments) {
  const std::string_view tool = arguments.size() > 2 ? arguments[1] : "";
  if (tool == "identify" || tool == "montage") {
    arguments.erase(arguments.begin());
    return {"/usr/bin/" + std::string(tool) + "-im6.q16", std::move(arguments)};
  }
  prepareTurned(arguments);
  flattenAvif(arguments);
  Invocation conversion = {"/usr/bin/convert-im6.q16", std::move(arguments)};
  drawSvg(conversion);
  return conversion;
}

}  // namespace

int main(int count, char** arguments) {
  constexpr int cannotRun = 127;
  constexpr int keep = 0;  // the caller's own choice of a policy
  const Invocation invocation = translated({arguments, arguments + count + 1});
  ::setenv("MAGICK_CONFIGURE_PATH", invocation.policyFolders.c_str(), keep);
  ::execv(invocation.program.c_str(), invocation.arguments.data());
  std::perror(invocation.program.c_str());
  return cannotRun;
}
