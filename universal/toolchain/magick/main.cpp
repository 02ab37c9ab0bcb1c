// tolvane-magick: the command line of ImageMagick 7 ("magick", "magick identify", "magick montage")
// carried out by version 6, whose programs have these names on Debian and its kin. Plain "convert"
// may be something else.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <span>
#include <spawn.h>
#include <string>
#include <string_view>
#include <strings.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
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

/// Told nothing but the picture's text, the renderer has no place to look for files that it names.
bool render(int svg, int png) {
  constexpr const char* program = "/usr/bin/rsvg-convert";
  std::array<std::string, 2> words = {program, "--format=png"};
  const std::array<char*, 3> pointers = {words[0].data(), words[1].data(), nullptr};
  posix_spawn_file_actions_t actions = {};
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, svg, STDIN_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, png, STDOUT_FILENO);
  pid_t renderer = 0;
  const bool hasStarted =
      ::posix_spawn(&renderer, program, &actions, nullptr, pointers.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  return hasStarted && ::waitpid(renderer, &status, 0) == renderer && status == 0;
}

/// A picture may state any size, and would be painted whole.
class MemoryLimit {
 public:
  explicit MemoryLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_AS, &before_);
    const rlimit limited = {std::min(bytes, before_.rlim_max), before_.rlim_max};
    ::setrlimit(RLIMIT_AS, &limited);
  }
  ~MemoryLimit() { ::setrlimit(RLIMIT_AS, &before_); }
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;

 private:
  rlimit before_ = {};
};

bool becomesStandardInput(const std::string& file) {
  constexpr rlim_t twoGigabytes = rlim_t{2} << 30U;
  const MemoryLimit limit(twoGigabytes);
  const int svg = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  const int png = ::memfd_create("picture", MFD_CLOEXEC);
  return svg >= 0 && png >= 0 && render(svg, png) && ::lseek(png, 0, SEEK_SET) == 0 &&
         ::dup2(png, STDIN_FILENO) >= 0;
}

/// Version 6 hands SVG to other programs through a shell, which is banned, and what its own reader
/// draws lacks gradients and clips and has outlines that nobody asked for.
/// @return false when it cannot be drawn.
bool drawSvg(Arguments& arguments) {
  static std::array<std::string, 3> drawn = {"-background", "none", "png:-[0]"};
  constexpr std::string_view firstOnly = "[0]";
  const auto input = inputOf(arguments);
  if (input == arguments.end()) {
    return true;
  }
  std::string file = *input;
  if (file.ends_with(firstOnly)) {
    file.resize(file.size() - firstOnly.size());
  }
  if (!hasExtension(file, ".svg")) {
    return true;
  }
  insert(arguments, arguments.erase(input), drawn);
  return becomesStandardInput(file);
}

/// @return nullopt when the picture cannot be drawn.
std::optional<Invocation> translated(Arguments arguments) {
  const std::string_view tool = arguments.size() > 2 ? arguments[1] : "";
  if (tool == "identify" || tool == "montage") {
    arguments.erase(arguments.begin());
    return Invocation{"/usr/bin/" + std::string(tool) + "-im6.q16", std::move(arguments)};
  }
  prepareTurned(arguments);
  flattenAvif(arguments);
  return drawSvg(arguments)
             ? std::optional(Invocation{"/usr/bin/convert-im6.q16", std::move(arguments)})
             : std::nullopt;
}

}  // namespace

int main(int count, char** arguments) {
  constexpr int cannotRun = 127;
  constexpr int keep = 0;  // the caller's own choice of a policy
  const auto invocation = translated({arguments, arguments + count + 1});
  if (!invocation) {
    return EXIT_FAILURE;
  }
  // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread
  ::setenv("MAGICK_CONFIGURE_PATH", policyFolder().c_str(), keep);
  ::execv(invocation->program.c_str(), invocation->arguments.data());
  std::perror(invocation->program.c_str());
  return cannotRun;
}
