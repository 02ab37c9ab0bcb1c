#include "universal/toolchain/engine_report.h"

#include <exception>
#include <sstream>
#include <string_view>

#include "platform/files/file_names.h"
#include "universal/toolchain/temporary_ground.h"

namespace tolvane {

namespace {

constexpr double versionTimeout = 10;  // seconds; the office suite's first start takes two

struct KnownEngine {
  const char* name;
  const char* versionArgument;  // empty: it tells when it is run without arguments
  const char* packages;
};

constexpr KnownEngine knownEngines[] = {
    {"ffmpeg", "-version", "ffmpeg"},
    {"ffprobe", "-version", "ffmpeg"},
    {"qpdf", "--version", "qpdf"},
    {"magick", "-version", "imagemagick"},
    {"soffice",
     "--version",
     "libreoffice-core libreoffice-writer libreoffice-calc libreoffice-impress"},
    {"pandoc", "--version", "pandoc"},
    {"7zz", "", "7zip"},
    {"zip", "-v", "zip"},
    {"unzip", "-v", "unzip"},
    {"tar", "--version", "tar"},
    {"rsvg-convert", "--version", "librsvg2-bin"},
    {"osascript", "", ""},  // belongs to another system; never found here
};

/// The first word that looks like one: starts with a digit and has a dot.
std::string versionIn(const Bytes& printed) {
  std::istringstream words(std::string(printed.begin(), printed.end()));
  for (std::string word; words >> word;) {
    if (word.front() >= '0' && word.front() <= '9' && word.find('.') != std::string::npos) {
      return word;
    }
  }
  return {};
}

std::string versionOf(const KnownEngine& engine, const LocalToolchain& toolchain) try {
  const TemporaryGround ground("tolvane-engine");
  EngineRun run = {engine.name, {}, ground.path(), versionTimeout};
  if (*engine.versionArgument != '\0') {
    run.arguments.emplace_back(engine.versionArgument);
  }
  if (run.name == "soffice") {
    run.arguments.push_back("-env:UserInstallation=" +
                            FileNames::localAddress(ground.path() / "profile"));
  }
  return versionIn(toolchain.run(run, CancellationToken()));
} catch (const std::exception&) {
  // It is installed but does not run, or there is no folder to run it in. That it has no version
  // shows it.
  return {};
}

}  // namespace

EngineReport EngineReport::make(const LocalToolchain& toolchain, const Confinement& confinement) {
  EngineReport report = {{}, confinement.description()};
  for (const KnownEngine& engine : knownEngines) {
    EngineStatus status = {engine.name, toolchain.find(engine.name), {}, engine.packages};
    if (status.path) {
      status.version = versionOf(engine, toolchain);
    }
    report.engines.push_back(std::move(status));
  }
  return report;
}

}  // namespace tolvane
