// An engine that means harm. Tries everything and prints one line an attack: its name and whether
// it was refused.
//
// usage: attacker INSIDE OUTSIDE TERMINAL ABSTRACT-SOCKET PORT HOST VICTIM

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/universal/toolchain/attack.h"

namespace {

using namespace tolvane::attacks;

/// In a process of its own: some attacks end in a killed process, which counts as refused.
bool isRefused(const Attack& attack, const Ground& ground) {
  std::fflush(stdout);
  const pid_t child = ::fork();
  if (child == 0) {
    constexpr unsigned stuck = 5;  // seconds
    ::alarm(stuck);
    ::_exit(attack.succeeds(ground) ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return !WIFEXITED(status) || WEXITSTATUS(status) != EXIT_SUCCESS;
}

const char* controlOf(const Attack& attack) {
  switch (attack.control) {
    case Unconfined::succeeds:
      return "always";
    case Unconfined::succeedsAsRoot:
      return "root";
    case Unconfined::dependsOnMachine:
      break;
  }
  return "machine";
}

/// Root reads and writes what others have closed, as when it works on their documents.
bool opensClosedFile(const Ground& ground) {
  const std::string file = ground.inside + "/closed";
  ::close(::open(file.c_str(), O_WRONLY | O_CREAT, 0));
  return ::open(file.c_str(), O_RDWR) >= 0;
}

/// What an honest engine does.
bool worksInside(const Ground& ground) {
  const std::string folder = ground.inside + "/honest";
  ::mkdir(folder.c_str(), 0700);
  std::ofstream(folder + "/file") << "x";
  std::ofstream null("/dev/null");
  null << "x" << std::flush;
  return null && ::rename((folder + "/file").c_str(), (ground.inside + "/result").c_str()) == 0 &&
         ::rmdir(folder.c_str()) == 0 && (::geteuid() != 0 || opensClosedFile(ground));
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 8) {
    return EXIT_FAILURE;
  }
  // The office suite's runs have an argument of the runner's own in front.
  char** own = arguments + count - 7;
  const Ground ground = {
      own[0], own[1], own[2], own[3], std::atoi(own[4]), std::atoi(own[5]), std::atoi(own[6])};
  for (const auto* table : {&onMetadata(), &onTheNetwork(), &onFiles(), &onTheSystem()}) {
    for (const Attack& attack : *table) {
      std::printf("%s\t%s\t%s\n",
                  isRefused(attack, ground) ? "refused" : "succeeded",
                  controlOf(attack),
                  attack.name);
    }
  }
  std::printf("inside\t%s\t-\n", worksInside(ground) ? "works" : "fails");
}
