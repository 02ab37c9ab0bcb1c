// Times one engine four ways in turn: bare, below bubblewrap, below the confinement helper, and by
// LocalToolchain. In one process, because starting an interpreter's child costs more than what is
// measured here.
//
// usage: engine_driver run ROUNDS MEGABYTES FOLDER ENGINE [ARGUMENT]...
//          Prints a line a round: milliseconds bare, bubblewrap, helper, LocalToolchain; "nan"
//          where the engine failed. FOLDER is emptied before each. MEGABYTES are kept resident
//          meanwhile.
//        engine_driver end ROUNDS FOLDER
//          Prints a line a round: milliseconds from an engine's last act until its end is noticed,
//          and until LocalToolchain returns.
//        engine_driver last-act
//          That engine: prints the clock.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "benchmarks/timed_run.h"
#include "platform/files/descriptor.h"
#include "platform/process/engine_process.h"
#include "platform/process/process_log.h"
#include "universal/toolchain/local_toolchain.h"
#include "universal/toolchain/socket_directory.h"

namespace {

namespace fs = std::filesystem;
using namespace tolvane;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using namespace tolvane::Benchmarks;

constexpr double timeout = 600;  // seconds
constexpr auto pollInterval = 40ms;

struct Engine {
  std::string name;
  fs::path program;
  Words arguments;
  fs::path folder;
};

EngineProcess::Environment inherited() {
  EngineProcess::Environment environment;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    environment.emplace(text.substr(0, text.find('=')), text.substr(text.find('=') + 1));
  }
  return environment;
}

Words withArguments(Words words, const Engine& engine) {
  words.push_back(engine.program);
  words.insert(words.end(), engine.arguments.begin(), engine.arguments.end());
  return words;
}

bool runByBubblewrap(const Engine& engine) {
  return runBare(withArguments({"/usr/bin/bwrap",
                                "--ro-bind",
                                "/",
                                "/",
                                "--bind",
                                engine.folder,
                                engine.folder,
                                "--dev-bind",
                                "/dev/null",
                                "/dev/null",
                                "--unshare-net",
                                "--die-with-parent"},
                               engine),
                 engine.folder);
}

ConfinedEngine confinedEngine(const Engine& engine) {
  return {engine.program, engine.arguments, engine.folder, engine.folder, {}, {}};
}

bool runByHelper(const Engine& engine, const EngineProcess::Environment& environment) {
  const Descriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
  std::optional<SocketDirectory> sockets;
  ConfinedEngine confined = confinedEngine(engine);
  if (engine.name == "soffice") {
    sockets.emplace();
    sockets->addTo(confined);
  }
  EngineProcess process(
      {Confinement::ofThisMachine().command(confined), environment, nowhere.number()});
  return process.exitStatus() == 0;
}

bool runByToolchain(const Engine& engine) {
  const EngineLocations here = {{engine.program.parent_path()}};
  LocalToolchain(here).run({engine.name, engine.arguments, engine.folder, timeout},
                           CancellationToken());
  return true;
}

void timeRuns(int rounds, const Engine& engine) {
  EngineProcess::Environment environment = inherited();
  environment["TMPDIR"] = engine.folder;
  timeInTurn(rounds,
             engine.folder,
             {[&] { return runBare(withArguments({}, engine), engine.folder); },
              [&] { return runByBubblewrap(engine); },
              [&] { return runByHelper(engine, environment); },
              [&] { return runByToolchain(engine); }});
}

double sinceLastAct(const Bytes& printed) {
  const std::string text(printed.begin(), printed.end());
  const Clock::time_point lastAct{std::chrono::nanoseconds(std::stoll(text))};
  return Milliseconds(Clock::now() - lastAct).count();
}

void timeEnds(int rounds, const Engine& engine) {
  const LocalToolchain toolchain(EngineLocations{{engine.program.parent_path()}});
  const EngineProcess::Environment environment = inherited();
  for (int round = 0; round < rounds; ++round) {
    const ProcessLog log(engine.folder);
    EngineProcess process(
        {Confinement::ofThisMachine().command(
             {engine.program, engine.arguments, engine.folder, engine.folder, {}, {}}),
         environment,
         log.descriptor()});
    while (!process.endsWithin(pollInterval)) {
    }
    const auto noticed = Clock::now();
    const double unread = sinceLastAct(log.content());
    const double reading = Milliseconds(Clock::now() - noticed).count();
    const double returned = sinceLastAct(toolchain.run(
        {engine.name, engine.arguments, engine.folder, timeout}, CancellationToken()));
    std::printf("%f %f\n", unread - reading, returned);
  }
}

int drive(const Words& words) {
  const std::string& order = words.at(0);
  if (order == "last-act") {
    std::printf("%lld\n", static_cast<long long>(Clock::now().time_since_epoch() / 1ns));
    std::fflush(stdout);
    ::_exit(EXIT_SUCCESS);
  }
  const int rounds = std::stoi(words.at(1));
  if (order == "end") {
    const fs::path self = fs::read_symlink("/proc/self/exe");
    timeEnds(rounds, {self.filename(), self, {"last-act"}, words.at(2)});
    return EXIT_SUCCESS;
  }
  constexpr std::size_t megabyte = 1'048'576;
  const std::vector<char> resident(std::stoul(words.at(2)) * megabyte, 'x');
  const std::string& name = words.at(4);
  const auto program = LocalToolchain().find(name);
  if (order != "run" || !program) {
    throw std::runtime_error("cannot " + order + " " + name);
  }
  timeRuns(rounds, {name, *program, {words.begin() + 5, words.end()}, words.at(3)});
  return EXIT_SUCCESS;
}

}  // namespace

int main(int count, char** arguments) try {
  return drive({arguments + 1, arguments + count});
} catch (const std::exception& error) {
  std::fprintf(stderr, "engine_driver: %s\n", error.what());
  return EXIT_FAILURE;
}
