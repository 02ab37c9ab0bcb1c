#include "bridge/job_control.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <utility>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/failure_text.h"
#include "platform/ending/memory_reserve.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

std::optional<std::string> textAt(const Value::Map& arguments, std::string_view key) {
  const std::string* text = valueAt(arguments, key).text();
  return text != nullptr ? std::optional(*text) : std::nullopt;
}

/// A preview, or why there is none.
ChannelReply previewOf(const ConversionEngine& engine, const fs::path& file, std::int64_t page) {
  try {
    return engine.thumbnail(file, page);
  } catch (const std::exception& failure) {
    return ChannelError{"preview", FailureText::of(failure), {}};
  }
}

}  // namespace

std::optional<JobRequest> JobRequest::read(const Value::Map& arguments) {
  auto id = textAt(arguments, "id");
  auto action = textAt(arguments, "action");
  auto inputs = valueAt(arguments, "inputs").texts();
  const auto isAbsolute = [](const std::string& path) { return path.starts_with('/'); };
  if (!id || !action || !inputs || inputs->empty() ||
      !std::all_of(inputs->begin(), inputs->end(), isAbsolute)) {
    return std::nullopt;
  }
  const Value::Map* options = valueAt(arguments, "options").map();
  return JobRequest{std::move(*id),
                    std::move(*action),
                    std::move(*inputs),
                    textAt(arguments, "destination"),
                    options != nullptr ? *options : Value::Map()};
}

void JobControl::addMethods(MethodTable& table) {
  table.add("startJob", [this](const Value::Map& arguments, const MethodReply& reply) {
    start(arguments, reply);
  });
  table.addFunction("cancelJob", [this](const Value::Map&) {
    cancel();
    return Value();
  });
  table.add("thumbnail", [this](const Value::Map& arguments, const MethodReply& reply) {
    thumbnail(arguments, reply);
  });
}

void JobControl::cancel() const {
  if (active_) {
    active_->token->cancel();
  }
}

void JobControl::start(const Value::Map& arguments, const MethodReply& reply) {
  if (active_) {
    reply.error("busy", "Finish or cancel the current job first.");
    return;
  }
  auto request = JobRequest::read(arguments);
  if (!request) {
    reply.error("arguments", "Missing conversion inputs.");
    return;
  }
  const auto token = std::make_shared<CancellationToken>();
  active_ = Active{request->id, token};
  reply.success();
  queue(std::move(*request), token);
}

void JobControl::WayBack::post(std::function<void(JobControl&)> task) const {
  main.post(ifPresent(std::move(task)));
}

void JobControl::WayBack::postSoon(std::function<void(JobControl&)> task) const {
  main.postSoon(ifPresent(std::move(task)));
}

MainQueue::Task JobControl::WayBack::ifPresent(std::function<void(JobControl&)> task) const {
  return [jobs = jobs, task = std::move(task)] {
    if (const auto present = jobs.lock()) {
      task(*present);
    }
  };
}

void JobControl::queue(JobRequest request, const std::shared_ptr<CancellationToken>& token) {
  worker_.post([&engine = engine_, back = wayBack(), request = std::move(request), token] {
    const Progress progress = [&](int completed, int total) {
      back.postSoon([id = request.id, completed, total](const JobControl& jobs) {
        jobs.events_.send("jobProgress", {{"id", id}, {"completed", completed}, {"total", total}});
      });
    };
    back.post([outcome = run(engine, request, *token, progress)](JobControl& jobs) {
      jobs.finish(outcome);
    });
  });
}

JobControl::Outcome JobControl::run(const ConversionEngine& engine,
                                    const JobRequest& request,
                                    const CancellationToken& token,
                                    const Progress& progress) {
  const Clock::time_point started = Clock::now();
  MemoryReserve::hold();
  try {
    const std::vector<fs::path> outputs =
        engine.run({request.action,
                    {request.inputs.begin(), request.inputs.end()},
                    request.destination,
                    request.options,
                    token,
                    progress});
    return {"completed", {outputs.begin(), outputs.end()}, std::nullopt, started};
  } catch (const ConversionFailure& failure) {
    const char* status = failure.isCancelled() ? "cancelled" : "failed";
    return {status, {}, failure.errorDescription(), started};
  } catch (const std::exception& failure) {
    return {"failed", {}, FailureText::of(failure), started};
  }
}

void JobControl::finish(const Outcome& outcome) {
  const std::chrono::duration<double> seconds = Clock::now() - outcome.started;
  Value::Map payload = {{"id", active_->id},
                        {"status", outcome.status},
                        {"outputs", Value::List(outcome.outputs.begin(), outcome.outputs.end())},
                        {"seconds", seconds.count()}};
  if (outcome.error) {
    payload["error"] = *outcome.error;
  }
  active_.reset();
  events_.send("jobCompleted", std::move(payload));
}

void JobControl::thumbnail(const Value::Map& arguments, const MethodReply& reply) {
  const auto path = textAt(arguments, "path");
  const auto index = valueAt(arguments, "index").integer();
  if (!path || !index) {
    reply.error("arguments", "Missing page.");
    return;
  }
  worker_.post([&engine = engine_,
                back = wayBack(),
                file = fs::path(*path),
                page = *index,
                reply = MethodReply(reply)]() mutable {
    // The reply belongs to the main thread: nothing of it may stay here.
    back.post([preview = previewOf(engine, file, page),
               reply = std::move(reply)](const JobControl&) { reply.answer(preview); });
  });
}

}  // namespace tolvane
