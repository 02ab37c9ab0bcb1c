#include <csignal>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include "cli/action_command.h"
#include "cli/arguments.h"
#include "cli/console.h"
#include "cli/engines_command.h"
#include "cli/exit_status.h"
#include "cli/help.h"
#include "cli/host_command.h"
#include "cli/inspect_command.h"
#include "cli/offer_commands.h"
#include "cli/offers_command.h"
#include "cli/open_command.h"
#include "engine/primitives/failure_text.h"

namespace {

using tolvane::Arguments;
using tolvane::ExitStatus;
using tolvane::UsageError;

ExitStatus run(const Arguments& arguments) {
  if (arguments.version) {
    tolvane::Console::print(tolvane::versionText);
    return ExitStatus::done;
  }
  if (arguments.help) {
    tolvane::Console::print(tolvane::helpText);
    return ExitStatus::done;
  }
  using Command = ExitStatus (*)(const Arguments&);
  const std::map<std::string, Command> commands = {{"action", tolvane::actionCommand},
                                                   {"convert", tolvane::convertCommand},
                                                   {"engines", tolvane::enginesCommand},
                                                   {"host", tolvane::hostCommand},
                                                   {"inspect", tolvane::inspectCommand},
                                                   {"offers", tolvane::offersCommand},
                                                   {"open", tolvane::openCommand},
                                                   {"tool", tolvane::toolCommand}};
  const auto found = commands.find(arguments.command);
  if (found == commands.end()) {
    throw UsageError(arguments.command.empty() ? "Name a command."
                                               : "There is no command " + arguments.command + ".");
  }
  return found->second(arguments);
}

}  // namespace

int main(int count, char** words) {
  tolvane::Console::claimStreams();
  // A reader that goes away and a file that grows too large show as failed writes; they must not
  // end a job half-way.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  ExitStatus status = ExitStatus::failed;
  try {
    status = run(Arguments::parse({words + 1, words + count}));
  } catch (const UsageError& error) {
    tolvane::Console::say(std::string(error.what()) + " See tolvane --help.\n");
    status = ExitStatus::wrongUsage;
  } catch (const std::exception& error) {
    tolvane::Console::say(tolvane::FailureText::of(error) + "\n");
  }
  if (!tolvane::Console::flushResults() && status == ExitStatus::done) {
    tolvane::Console::say("The results could not be written to standard output.\n");
    status = ExitStatus::failed;
  }
  return static_cast<int>(status);
}
