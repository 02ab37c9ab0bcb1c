#include "cli/engines_command.h"

#include <fmt/format.h>

#include "cli/console.h"
#include "engine/json/value_json.h"
#include "platform/process/ending_signals.h"
#include "universal/toolchain/engine_report.h"

namespace tolvane {

namespace {

Value json(const EngineReport& report) {
  Value::List engines;
  for (const EngineStatus& engine : report.engines) {
    engines.emplace_back(Value::Map{{"name", engine.name},
                                    {"path", engine.path ? Value(engine.path->string()) : Value()},
                                    {"version", engine.version},
                                    {"packages", engine.packages}});
  }
  return Value::Map{{"engines", std::move(engines)}, {"confinement", report.confinement}};
}

std::string stateOf(const EngineStatus& engine) {
  if (engine.packages.empty()) {
    return "does not exist on this system";
  }
  if (!engine.path) {
    return fmt::format("not found; the package {} brings it", engine.packages);
  }
  const std::string version = engine.version.empty() ? "unknown" : engine.version;
  return fmt::format("{}, version {}, package {}", engine.path->string(), version, engine.packages);
}

}  // namespace

ExitStatus enginesCommand(const Arguments& arguments) {
  if (!arguments.operands.empty()) {
    throw UsageError("The list of engines takes no files.");
  }
  // What stands in /tmp meanwhile goes also when this is interrupted.
  const EndingSignals ending(EndingSignals::Duration::zero());
  const EngineReport report = EngineReport::make(LocalToolchain());
  if (arguments.json) {
    Console::print(fmt::format("{}\n", ValueJson::write(json(report))));
    return ExitStatus::done;
  }
  for (const EngineStatus& engine : report.engines) {
    Console::print(fmt::format("{:<10} {}\n", engine.name, stateOf(engine)));
  }
  Console::print(fmt::format("\n{}\n", report.confinement));
  return ExitStatus::done;
}

}  // namespace tolvane
