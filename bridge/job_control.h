#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bridge/event_stream.h"
#include "bridge/method_table.h"
#include "engine/conversion_engine.h"
#include "engine/primitives/cancellation_token.h"
#include "platform/threads/main_queue.h"
#include "platform/threads/serial_queue.h"

namespace tolvane {

/// What "startJob" asks for, once its arguments were found complete.
struct JobRequest {
  std::string id;  ///< chosen by the interface, only echoed
  std::string action;
  std::vector<std::string> inputs;  ///< absolute
  std::optional<std::string> destination;
  Value::Map options;

  /// @return nullopt when "id", "action" or "inputs" is missing, there is no input, or one is not
  ///   absolute.
  [[nodiscard]] static std::optional<JobRequest> read(const Value::Map& arguments);
};

/// Runs at most one job at a time, and page previews, on the worker queue. Main thread only.
/// Results that come back when this object is gone are dropped.
class JobControl : public std::enable_shared_from_this<JobControl> {
 public:
  /// None of the four is owned; all outlive this object, and the engine, the worker's tasks and
  /// `main` what the worker still runs.
  JobControl(const ConversionEngine& engine,
             SerialQueue& worker,
             MainQueue& main,
             const EventStream& events)
      : engine_(engine), worker_(worker), main_(main), events_(events) {}

  /// "startJob", "cancelJob" and "thumbnail".
  /// @param table not used when this object is gone; so in every room.
  void addMethods(MethodTable& table);

  [[nodiscard]] bool isActive() const { return active_.has_value(); }
  /// Asks the running job, if any, to stop; its outcome follows as usual.
  void cancel() const;

 private:
  using Clock = std::chrono::steady_clock;
  struct Active {
    std::string id;
    std::shared_ptr<CancellationToken> token;
  };
  struct Outcome {
    const char* status;
    std::vector<std::string> outputs;
    std::optional<std::string> error;
    Clock::time_point started;  // by the worker
  };

  /// Takes what the worker found out to the main thread, and to this object if it is still there.
  struct WayBack {
    std::weak_ptr<JobControl> jobs;
    MainQueue& main;

    void post(std::function<void(JobControl&)> task) const;
    /// Reports of progress come by the hundred.
    void postSoon(std::function<void(JobControl&)> task) const;

   private:
    [[nodiscard]] MainQueue::Task ifPresent(std::function<void(JobControl&)> task) const;
  };

  [[nodiscard]] WayBack wayBack() { return {weak_from_this(), main_}; }
  void start(const Value::Map& arguments, const MethodReply& reply);
  void thumbnail(const Value::Map& arguments, const MethodReply& reply);
  void queue(JobRequest request, const std::shared_ptr<CancellationToken>& token);
  void finish(const Outcome& outcome);

  /// On the worker.
  static Outcome run(const ConversionEngine& engine,
                     const JobRequest& request,
                     const CancellationToken& token,
                     const Progress& progress);

  const ConversionEngine& engine_;
  SerialQueue& worker_;
  MainQueue& main_;
  const EventStream& events_;
  std::optional<Active> active_;
};

}  // namespace tolvane
