#include "cli/inspect_command.h"

#include <fmt/format.h>

#include "cli/console.h"
#include "engine/conversion_engine.h"
#include "engine/json/value_json.h"
#include "engine/primitives/failure_text.h"

namespace tolvane {

namespace {

/// The file entry of an admitted file, or "path" and "error".
Value judged(const std::string& file) {
  try {
    return ConversionEngine().inspect(file).json();
  } catch (const std::exception& error) {
    return Value::Map{{"path", file}, {"error", FailureText::of(error)}};
  }
}

void printLine(const std::string& file, const Value& entry) {
  if (const std::string* error = entry["error"].text()) {
    Console::say(fmt::format("{}: {}\n", file, *error));
  } else {
    Console::print(
        fmt::format("{}: {}, {}\n", file, *entry["kind"].text(), *entry["detail"].text()));
  }
}

}  // namespace

ExitStatus inspectCommand(const Arguments& arguments) {
  Value::List entries;
  ExitStatus status = ExitStatus::done;
  for (const std::string& file : namedFiles(arguments, 0)) {
    const Value entry = judged(file);
    if (!entry["error"].isNull()) {
      status = ExitStatus::failed;
    }
    if (arguments.json) {
      entries.push_back(entry);
    } else {
      printLine(file, entry);
    }
  }
  if (arguments.json) {
    Console::print(fmt::format("{}\n", ValueJson::write(entries)));
  }
  return status;
}

}  // namespace tolvane
