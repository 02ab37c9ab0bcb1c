#include "cli/job_run.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <unistd.h>
#include <utility>

#include <fmt/format.h>

#include "cli/console.h"
#include "cli/host_session.h"
#include "cli/progress_bar.h"
#include "engine/json/value_json.h"
#include "engine/primitives/conversion_failure.h"
#include "platform/ending/last_act.h"
#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

/// One job from its start to its "jobCompleted", driven like any interface drives the host.
class JobRun {
 public:
  explicit JobRun(ProgressBar::Visibility progress)
      : host_([this] { host_.call("cancelJob", nullptr); }), progress_(progress) {
    host_.listen([this](const Value::Map& event) { hear(event); });
  }

  /// @return the payload of "jobCompleted".
  Value::Map run(const Value::Map& arguments) {
    host_.call("startJob", arguments, [this](const ChannelError& error) {
      finish({{"status", "failed"}, {"error", error.message}});
    });
    if (outcome_.empty()) {
      host_.loop().run();
    }
    progress_.wipe();
    return outcome_;
  }

 private:
  void hear(const Value::Map& event) {
    const Value& type = valueAt(event, "type");
    if (type == Value("jobProgress")) {
      progress_.show(valueAt(event, "completed").integer().value_or(0),
                     valueAt(event, "total").integer().value_or(0));
    } else if (type == Value("jobCompleted")) {
      finish(event);
    }
  }

  void finish(Value::Map outcome) {
    outcome_ = std::move(outcome);
    host_.loop().quit();
  }

  HostSession host_;
  ProgressBar progress_;
  Value::Map outcome_;
};

/// The folder of --out, made when it is missing, and gone again when nothing came to stand in it.
class OutputFolder {
 public:
  explicit OutputFolder(const std::optional<std::filesystem::path>& folder) {
    std::error_code error;
    // A link that leads nowhere is left to the job, which refuses it.
    const auto status =
        folder ? std::filesystem::symlink_status(*folder, error) : std::filesystem::file_status();
    if (status.type() == std::filesystem::file_type::not_found) {
      std::filesystem::create_directory(*folder, error);
      if (error) {
        throw PlatformError::fromErrno("create", *folder, error.value());
      }
      made_ = *folder;
    }
  }
  ~OutputFolder() { removeIfEmpty(); }
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;

 private:
  void removeIfEmpty() const {
    if (!made_.empty()) {
      ::rmdir(made_.c_str());
    }
  }

  std::filesystem::path made_;
  LastAct atTheEnd_{[this] { removeIfEmpty(); }};
};

Value::Map jobArguments(const Arguments& arguments,
                        const std::string& action,
                        std::size_t firstFile,
                        Value::Map options) {
  Value::List inputs;
  for (const std::string& file : namedFiles(arguments, firstFile)) {
    if (FileNames::isAddress(file)) {
      throw ConversionFailure::message("Choose a local file.");
    }
    inputs.emplace_back(file);
  }
  Value::Map job = {{"id", "1"},
                    {"action", action},
                    {"inputs", std::move(inputs)},
                    {"options", std::move(options)}};
  if (arguments.out) {
    job["destination"] = arguments.out->string();
  }
  return job;
}

void printOutcome(const Value::Map& outcome) {
  if (const Value::List* outputs = valueAt(outcome, "outputs").list()) {
    for (const Value& output : *outputs) {
      Console::print(fmt::format("{}\n", *output.text()));
    }
  }
  if (const std::string* error = valueAt(outcome, "error").text()) {
    Console::say(fmt::format("{}\n", *error));
  }
}

void printJson(Value::Map outcome) {
  for (const char* key : {"type", "version", "id"}) {
    outcome.erase(key);
  }
  Console::print(fmt::format("{}\n", ValueJson::write(outcome)));
}

ExitStatus statusOf(const Value::Map& outcome) {
  const Value& status = valueAt(outcome, "status");
  if (status == Value("completed")) {
    return ExitStatus::done;
  }
  return status == Value("cancelled") ? ExitStatus::cancelled : ExitStatus::failed;
}

}  // namespace

ExitStatus runJob(const Arguments& arguments,
                  const std::string& action,
                  std::size_t firstFile,
                  Value::Map options) {
  const bool isSilent = arguments.quiet || arguments.json;
  const Value::Map job = jobArguments(arguments, action, firstFile, std::move(options));
  const OutputFolder folder(arguments.out);
  JobRun jobRun(isSilent ? ProgressBar::Visibility::hidden : ProgressBar::Visibility::onTerminals);
  const Value::Map outcome = jobRun.run(job);
  if (arguments.json) {
    printJson(outcome);
  } else {
    printOutcome(outcome);
  }
  return statusOf(outcome);
}

}  // namespace tolvane
