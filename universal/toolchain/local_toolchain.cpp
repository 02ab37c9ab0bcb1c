#include "universal/toolchain/local_toolchain.h"

#include <chrono>
#include <string_view>
#include <system_error>
#include <unistd.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "platform/process/engine_process.h"
#include "platform/process/process_log.h"
#include "universal/toolchain/engine_failure.h"
#include "universal/toolchain/output_watch.h"
#include "universal/toolchain/readable_places.h"
#include "universal/toolchain/socket_directory.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto pollInterval = 40ms;
constexpr auto politeWait = 1000ms;
constexpr auto politeInterval = 20ms;
constexpr std::uint64_t maxLogBytes = 16'777'216;  // of a running engine; equal is still allowed
constexpr std::uint64_t maxFinalLogBytes = 268'435'456;  // of an ended one: it is read into memory
constexpr std::string_view officeSuite = "soffice";

enum class Ending { byItself, cancelled, timedOut, tooTalkative };

fs::path makeScratch(const fs::path& folder) {
  fs::path scratch = folder / ".engine-tmp";
  std::error_code ignored;
  if (!fs::is_directory(scratch, ignored)) {
    FileSystem::createDirectory(scratch, FileSystem::ownerOnly);
  }
  return scratch;
}

/// Archivers turn several times of every entry into local time, and the C library looks each time
/// whether its rules have changed, unless they are named. Naming its own choice changes nothing but
/// the speed: a listing of 10,000 entries takes a third of the time.
bool asksForLocalTimeOften(std::string_view engine) {
  return engine == "7zz" || engine == "zip" || engine == "unzip";
}

/// Of the user's environment, what says how text is written and what time it is. The rest may hold
/// passwords, or change what an engine does.
bool isPassedOn(std::string_view name) {
  return name == "PATH" || name == "LANG" || name == "LANGUAGE" || name == "TZ" ||
         name.starts_with("LC_");
}

EngineProcess::Environment environmentFor(const EngineRun& run, const fs::path& scratch) {
  EngineProcess::Environment environment = run.environment;
  for (const char* name : {"HOME", "TMPDIR", "MAGICK_TEMPORARY_PATH", "XDG_CACHE_HOME"}) {
    environment.emplace(name, scratch.string());
  }
  if (const fs::path data = ReadablePlaces::ownData(); !data.empty()) {
    environment.emplace("XDG_DATA_HOME", data.string());  // where the user's fonts are looked for
  }
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    const std::size_t equals = text.find('=');
    if (equals != std::string_view::npos && isPassedOn(text.substr(0, equals))) {
      environment.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
  }
  if (asksForLocalTimeOften(run.name)) {
    environment.emplace("TZ", ":/etc/localtime");
  }
  return environment;
}

/// Waits for the engine's end or for a reason to stop it.
Ending watch(const EngineProcess& process,
             const ProcessLog& log,
             const CancellationToken& token,
             const EngineRun& run,
             const std::function<void()>& look) {
  const auto start = Clock::now();
  if (process.endsWithin(0ms)) {
    return Ending::byItself;
  }
  do {
    if (token.isCancelled()) {
      return Ending::cancelled;
    }
    if (std::chrono::duration<double>(Clock::now() - start).count() >= run.timeout) {
      return Ending::timedOut;
    }
    if (log.size().value_or(0) > maxLogBytes) {
      return Ending::tooTalkative;
    }
    look();
  } while (!process.endsWithin(pollInterval));
  return Ending::byItself;
}

/// Asks it to end and gives it a second; what is left then, and what it started, is killed by the
/// end of `process`.
void stop(const EngineProcess& process) {
  process.askToEnd();
  const auto limit = Clock::now() + politeWait;
  while (!process.endsWithin(politeInterval) && Clock::now() < limit) {
  }
}

[[noreturn]] void fail(Ending ending) {
  switch (ending) {
    case Ending::timedOut:
      throw ConversionFailure::message(
          "The local engine timed out. Try a smaller file or selection.");
    case Ending::tooTalkative:
      throw ConversionFailure::message("The engine produced too much diagnostic output.");
    case Ending::byItself:
    case Ending::cancelled:
      break;
  }
  throw ConversionFailure::cancelled();
}

}  // namespace

std::optional<fs::path> LocalToolchain::find(std::string_view engine) const {
  for (const fs::path& candidate : locations_.candidates(engine)) {
    if (FileSystem::isExecutableFile(candidate)) {
      return candidate;
    }
  }
  return std::nullopt;
}

bool LocalToolchain::usesAdapter(std::string_view engine) const {
  const auto adapter = locations_.adapters.find(engine);
  return adapter != locations_.adapters.end() && find(engine) == adapter->second.program;
}

const Confinement& LocalToolchain::confinement() const {
  return confinement_ != nullptr ? *confinement_ : Confinement::ofThisMachine();
}

Bytes LocalToolchain::run(const EngineRun& run, const CancellationToken& token) const {
  const std::optional<fs::path> program = find(run.name);
  if (!program) {
    throw ConversionFailure::message("Install " + run.name +
                                     " to use this local operation, then reopen the file.");
  }
  const EngineLimits limits = run.limits.value_or(EngineLimits::of(run.name));
  std::optional<SocketDirectory> sockets;  // goes after the log
  const fs::path folder = fs::absolute(run.in);
  const ProcessLog log(folder);
  ConfinedEngine engine = {*program, run.arguments, folder, {}, {}, {}, {}};
  engine.folder = fs::absolute(run.currentDirectory.value_or(folder));
  engine.root = FileSystem::resolved(run.writableRoot.value_or(folder));
  engine.readable = ReadablePlaces::of(run.name, *program);
  engine.readable.insert(engine.readable.end(), run.inputs.begin(), run.inputs.end());
  engine.readable.push_back(folder);
  engine.memory = limits.memory;
  engine.fileSize = limits.fileSize();
  if (run.name == officeSuite) {
    sockets.emplace();
    sockets->addTo(engine);
  }
  const EngineProcess::Environment environment = environmentFor(run, makeScratch(folder));
  const std::function<void()> look =
      run.whileRunning ? run.whileRunning : OutputWatch(engine.root, limits.output);
  token.check();

  EngineProcess process({confinement().command(engine), environment, log.descriptor()});
  const Ending ending = watch(process, log, token, run, look);
  if (ending != Ending::byItself) {
    stop(process);
    fail(ending);
  }
  const int status = process.exitStatus();
  if (log.size().value_or(0) > maxFinalLogBytes) {
    fail(Ending::tooTalkative);
  }
  Bytes printed = log.content();
  if (!run.accepted.contains(status)) {
    EngineFailure::explain({.engine = run.name,
                            .status = status,
                            .printed = printed,
                            .known = run.explain ? run.explain(asText(printed)) : std::nullopt,
                            .peakMemory = process.peakMemory(),
                            .limits = limits,
                            .folder = engine.root});
  }
  return printed;
}

}  // namespace tolvane
