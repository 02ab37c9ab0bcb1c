#include <csignal>
#include <cstdio>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include "cli/action_command.h"
#include "cli/arguments.h"
#include "cli/engines_command.h"
#include "cli/exit_status.h"
#include "cli/help.h"
#include "cli/host_command.h"
#include "cli/inspect_command.h"
#include "cli/offers_command.h"

namespace {

using tolvane::Arguments;
using tolvane::ExitStatus;
using tolvane::UsageError;

ExitStatus run(const Arguments& arguments) {
  if (arguments.version) {
    std::fputs(tolvane::versionText, stdout);
    return ExitStatus::done;
  }
  if (arguments.help) {
    std::fputs(tolvane::helpText, stdout);
    return ExitStatus::done;
  }
  using Command = ExitStatus (*)(const Arguments&);
  const std::map<std::string, Command> commands = {{"action", tolvane::actionCommand},
                                                   {"engines", tolvane::enginesCommand},
                                                   {"host", tolvane::hostCommand},
                                                   {"inspect", tolvane::inspectCommand},
                                                   {"offers", tolvane::offersCommand}};
  const auto found = commands.find(arguments.command);
  if (found == commands.end()) {
    throw UsageError(arguments.command.empty() ? "Name a command."
                                               : "There is no command " + arguments.command + ".");
  }
  return found->second(arguments);
}

}  // namespace

int main(int count, char** words) {
  // A reader that goes away shows as a failed write; it must not end a job half-way.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return static_cast<int>(run(Arguments::parse({words + 1, words + count})));
  } catch (const UsageError& error) {
    std::fprintf(stderr, "%s See tolvane --help.\n", error.what());
    return static_cast<int>(ExitStatus::wrongUsage);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return static_cast<int>(ExitStatus::failed);
  }
}
