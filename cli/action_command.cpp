#include "cli/action_command.h"

#include "cli/job_run.h"
#include "cli/job_settings.h"

namespace tolvane {

ExitStatus actionCommand(const Arguments& arguments) {
  if (arguments.operands.empty()) {
    throw UsageError("Name an action and at least one file.");
  }
  const std::string& action = arguments.operands.front();
  return runJob(arguments, action, 1, actionOptions(arguments, action));
}

}  // namespace tolvane
