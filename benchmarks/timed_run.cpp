#include "benchmarks/timed_run.h"

#include <cmath>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tolvane::Benchmarks {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

bool runBare(Words words, const fs::path& folder) {
  std::vector<char*> pointers;
  for (std::string& word : words) {
    pointers.push_back(word.data());
  }
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions = {};
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    ::posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
  }
  pid_t process = -1;
  const int code =
      ::posix_spawn(&process, pointers.front(), &actions, nullptr, pointers.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  int status = -1;
  return code == 0 && ::waitpid(process, &status, 0) == process && status == 0;
}

double timed(const fs::path& folder, const std::function<bool()>& run) {
  fs::remove_all(folder);
  fs::create_directory(folder);
  const auto start = Clock::now();
  try {
    if (!run()) {
      return std::nan("");
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return std::nan("");
  }
  return Milliseconds(Clock::now() - start).count();
}

void timeInTurn(int rounds,
                const fs::path& folder,
                const std::vector<std::function<bool()>>& ways) {
  for (int round = -1; round < rounds; ++round) {
    std::vector<double> times(ways.size());
    for (std::size_t turn = 0; turn < ways.size(); ++turn) {
      const std::size_t way = (turn + static_cast<std::size_t>(round + 1)) % ways.size();
      times[way] = timed(folder, ways[way]);
    }
    for (std::size_t way = 0; round >= 0 && way < ways.size(); ++way) {
      std::printf("%f%c", times[way], way + 1 < ways.size() ? ' ' : '\n');
    }
    std::fflush(stdout);
  }
}

}  // namespace tolvane::Benchmarks
