#include "platform/desktop/accessibility/accessibility_bus.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <gio/gio.h>

#include "platform/desktop/accessibility/accessibility_messages.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
  void operator()(GVariant* value) const { g_variant_unref(value); }
  void operator()(GMainContext* context) const { g_main_context_unref(context); }
  void operator()(GError* error) const { g_error_free(error); }
  void operator()(gchar* text) const { g_free(text); }
};
template <typename T>
using Owned = std::unique_ptr<T, Unref>;
using Connection = Owned<GDBusConnection>;

/// What is asked from within its scope calls back in this context only.
class ContextScope {
 public:
  explicit ContextScope(GMainContext* context) : context_(context) {
    g_main_context_push_thread_default(context_);
  }
  ~ContextScope() { g_main_context_pop_thread_default(context_); }
  ContextScope(const ContextScope&) = delete;
  ContextScope& operator=(const ContextScope&) = delete;

 private:
  GMainContext* context_;
};

/// @return at least 1, because GIO takes 0 and less for its own default.
int millisecondsUntil(AccessibleQuestions::Deadline deadline) {
  using std::chrono::milliseconds;
  const auto left = std::chrono::duration_cast<milliseconds>(
      deadline - AccessibleQuestions::Deadline::clock::now());
  return static_cast<int>(std::clamp<milliseconds::rep>(left.count(), 1, 60'000));
}

/// One batch under way; the calls point to it until all have called back.
struct Batch {
  struct Call {
    Batch* batch = nullptr;
    Ask ask = Ask::name;
    AccessibleAnswer answer;
  };
  std::vector<Call> calls;
  std::size_t waiting = 0;
};

void replied(GObject* source, GAsyncResult* result, gpointer data) {
  auto& call = *static_cast<Batch::Call*>(data);
  const Owned<GVariant> reply(
      g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(source), result, nullptr));
  if (reply != nullptr) {
    try {
      call.answer = AccessibilityMessages::answer(call.ask, *reply);
    } catch (const std::exception&) {  // not through the library that calls this: unanswered
    }
  }
  --call.batch->waiting;
}

struct Opening {
  Connection connection;
  bool isDone = false;
};

void opened(GObject* /*source*/, GAsyncResult* result, gpointer data) {
  auto& opening = *static_cast<Opening*>(data);
  opening.connection.reset(g_dbus_connection_new_for_address_finish(result, nullptr));
  opening.isDone = true;
}

}  // namespace

class AccessibilityBus::Connections {
 public:
  Connections() : context_(g_main_context_new()) {}

  std::vector<AccessibleAnswer> ask(const std::vector<AccessibleQuestion>& questions,
                                    Deadline deadline) {
    const ContextScope scope(context_.get());
    connect(deadline);
    Batch batch;
    batch.calls.resize(questions.size());
    for (std::size_t i = 0; i < questions.size(); ++i) {
      batch.calls[i].batch = &batch;
      batch.calls[i].ask = questions[i].ask;
      if (Deadline::clock::now() < deadline) {
        send(questions[i], batch.calls[i], deadline);
      }
    }
    while (batch.waiting > 0) {
      g_main_context_iteration(context_.get(), TRUE);
    }
    std::vector<AccessibleAnswer> answers;
    answers.reserve(batch.calls.size());
    for (Batch::Call& call : batch.calls) {
      answers.push_back(std::move(call.answer));
    }
    return answers;
  }

 private:
  void connect(Deadline deadline) {
    if (!isOpen(session_)) {
      const Owned<gchar> address(
          g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
      session_ = open(address.get(), deadline);
    }
    if (isOpen(session_) && !isOpen(elements_)) {
      elements_ = open(elementsAddress(deadline).c_str(), deadline);
    }
    if (!isOpen(elements_)) {
      throw PlatformError("The accessibility bus of the session cannot be reached.");
    }
  }

  static bool isOpen(const Connection& connection) {
    return connection != nullptr && g_dbus_connection_is_closed(connection.get()) == FALSE;
  }

  Connection open(const char* address, Deadline deadline) {
    if (address == nullptr || *address == '\0') {
      return nullptr;
    }
    const Owned<GCancellable> cancellable(g_cancellable_new());
    Opening opening;
    g_dbus_connection_new_for_address(
        address,
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr,
        cancellable.get(),
        &opened,
        &opening);
    const auto stop = [](gpointer data) -> gboolean {
      g_cancellable_cancel(static_cast<GCancellable*>(data));
      return G_SOURCE_REMOVE;
    };
    GSource* const timer = g_timeout_source_new(static_cast<guint>(millisecondsUntil(deadline)));
    g_source_set_callback(timer, stop, cancellable.get(), nullptr);
    g_source_attach(timer, context_.get());
    while (!opening.isDone) {
      g_main_context_iteration(context_.get(), TRUE);
    }
    g_source_destroy(timer);
    g_source_unref(timer);
    if (opening.connection != nullptr) {
      g_dbus_connection_set_exit_on_close(opening.connection.get(), FALSE);
    }
    return std::move(opening.connection);
  }

  std::string elementsAddress(Deadline deadline) {
    const Owned<GVariant> reply(g_dbus_connection_call_sync(session_.get(),
                                                            "org.a11y.Bus",
                                                            "/org/a11y/bus",
                                                            "org.a11y.Bus",
                                                            "GetAddress",
                                                            nullptr,
                                                            G_VARIANT_TYPE("(s)"),
                                                            G_DBUS_CALL_FLAGS_NONE,
                                                            millisecondsUntil(deadline),
                                                            nullptr,
                                                            nullptr));
    const gchar* address = "";
    if (reply != nullptr) {
      g_variant_get(reply.get(), "(&s)", &address);
    }
    return address;
  }

  void send(const AccessibleQuestion& question, Batch::Call& call, Deadline deadline) {
    const AccessibilityMessages::Message message = AccessibilityMessages::message(question);
    ++call.batch->waiting;
    g_dbus_connection_call(message.isOfSession ? session_.get() : elements_.get(),
                           message.bus.c_str(),
                           message.path.c_str(),
                           message.interface,
                           message.method,
                           message.arguments,
                           nullptr,
                           G_DBUS_CALL_FLAGS_NO_AUTO_START,
                           millisecondsUntil(deadline),
                           nullptr,
                           &replied,
                           &call);
  }

  Owned<GMainContext> context_;
  Connection session_;
  Connection elements_;
};

AccessibilityBus::AccessibilityBus() : connections_(std::make_unique<Connections>()) {}

AccessibilityBus::~AccessibilityBus() = default;

std::vector<AccessibleAnswer> AccessibilityBus::ask(
    const std::vector<AccessibleQuestion>& questions, Deadline deadline) {
  return connections_->ask(questions, deadline);
}

}  // namespace tolvane
