#include <gio/gio.h>
#include <memory>
#include <string>
#include <utility>

#include "platform/process/desktop_host.h"
#include "platform/process/session_bus.h"

namespace tolvane {

namespace {

constexpr const char* managerName = "org.freedesktop.FileManager1";
// Milliseconds for one answer of the bus itself, which takes less than 1. GIO's own limit of 25 s
// is too long for the main thread.
constexpr unsigned maxWait = 250;

struct Unref {
  void operator()(GDBusConnection* object) const { g_object_unref(object); }
  void operator()(GCancellable* object) const { g_object_unref(object); }
  void operator()(GMainContext* context) const { g_main_context_unref(context); }
  void operator()(GSource* source) const { g_source_unref(source); }
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
  void operator()(char** strings) const { g_strfreev(strings); }
  void operator()(char* string) const { g_free(string); }
};
using Connection = std::unique_ptr<GDBusConnection, Unref>;
using Variant = std::unique_ptr<GVariant, Unref>;

/// A GLib context for one wait, so that no other event of this thread is handled meanwhile.
class PrivateContext {
 public:
  PrivateContext() : context_(g_main_context_new()) {
    g_main_context_push_thread_default(context_.get());
  }
  ~PrivateContext() { g_main_context_pop_thread_default(context_.get()); }
  PrivateContext(const PrivateContext&) = delete;
  PrivateContext& operator=(const PrivateContext&) = delete;

  [[nodiscard]] GMainContext* pointer() const { return context_.get(); }

 private:
  std::unique_ptr<GMainContext, Unref> context_;
};

struct Connecting {
  bool isDone = false;
  Connection bus;
};

void connected(GObject*, GAsyncResult* result, gpointer data) {
  auto* const connecting = static_cast<Connecting*>(data);
  connecting->bus.reset(g_bus_get_finish(result, nullptr));
  connecting->isDone = true;
}

gboolean giveUp(gpointer cancellable) {
  g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
  return G_SOURCE_REMOVE;
}

/// @return null when there is no session bus, or it does not greet us in time.
Connection connect() {
  const PrivateContext context;
  const std::unique_ptr<GCancellable, Unref> cancellable(g_cancellable_new());
  const std::unique_ptr<GSource, Unref> limit(g_timeout_source_new(maxWait));
  g_source_set_callback(limit.get(), giveUp, cancellable.get(), nullptr);
  g_source_attach(limit.get(), context.pointer());
  Connecting connecting;
  g_bus_get(G_BUS_TYPE_SESSION, cancellable.get(), connected, &connecting);
  while (!connecting.isDone) {
    g_main_context_iteration(context.pointer(), TRUE);
  }
  g_source_destroy(limit.get());
  if (connecting.bus) {
    // The end of the bus must not be ours.
    g_dbus_connection_set_exit_on_close(connecting.bus.get(), FALSE);
  }
  return std::move(connecting.bus);
}

/// Asks the bus itself. @return null when it does not answer in time.
Variant ask(GDBusConnection* bus, const char* method, GVariant* arguments, const char* type) {
  return Variant(g_dbus_connection_call_sync(bus,
                                             "org.freedesktop.DBus",
                                             "/org/freedesktop/DBus",
                                             "org.freedesktop.DBus",
                                             method,
                                             arguments,
                                             G_VARIANT_TYPE(type),
                                             G_DBUS_CALL_FLAGS_NONE,
                                             static_cast<int>(maxWait),
                                             nullptr,
                                             nullptr));
}

bool isOwned(GDBusConnection* bus, const char* name) {
  const Variant answer = ask(bus, "NameHasOwner", g_variant_new("(s)", name), "(b)");
  gboolean isOwned = FALSE;
  if (answer) {
    g_variant_get(answer.get(), "(b)", &isOwned);
  }
  return isOwned != FALSE;
}

bool isActivatable(GDBusConnection* bus) {
  const Variant answer = ask(bus, "ListActivatableNames", nullptr, "(as)");
  if (!answer) {
    return false;
  }
  char** names = nullptr;
  g_variant_get(answer.get(), "(^as)", &names);
  const std::unique_ptr<char*, Unref> owned(names);
  return g_strv_contains(names, managerName) != FALSE;
}

GVariantBuilder addressesOf(const std::vector<std::filesystem::path>& files) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("as"));
  for (const std::filesystem::path& file : files) {
    const std::unique_ptr<char, Unref> address(g_filename_to_uri(file.c_str(), nullptr, nullptr));
    if (address) {
      g_variant_builder_add(&builder, "s", address.get());
    }
  }
  return builder;
}

struct Call {
  const char* name;
  const char* path;
  const char* interfaceName;
  const char* method;
  GVariant* arguments;  // floating
};

/// @return whether the call has left this process, which may end now.
bool send(GDBusConnection* bus, const Call& call) {
  g_dbus_connection_call(bus,
                         call.name,
                         call.path,
                         call.interfaceName,
                         call.method,
                         call.arguments,
                         nullptr,
                         G_DBUS_CALL_FLAGS_NONE,
                         -1,
                         nullptr,
                         nullptr,
                         nullptr);
  return g_dbus_connection_flush_sync(bus, nullptr, nullptr) != FALSE;
}

/// D-Bus carries no text that is not UTF-8.
void addText(GVariantBuilder& dictionary, const char* key, const std::string& text) {
  if (!text.empty() && g_utf8_validate(text.c_str(), -1, nullptr) != FALSE) {
    g_variant_builder_add(&dictionary, "{sv}", key, g_variant_new_string(text.c_str()));
  }
}

GVariant* applicationArguments(const std::vector<std::filesystem::path>& files,
                               const Activation& activation) {
  GVariantBuilder platformData;
  g_variant_builder_init(&platformData, G_VARIANT_TYPE("a{sv}"));
  addText(platformData, DesktopHost::startupIdKey, activation.startupId);
  addText(platformData, DesktopHost::activationTokenKey, activation.token);
  if (files.empty()) {
    return g_variant_new("(a{sv})", &platformData);
  }
  GVariantBuilder addresses = addressesOf(files);
  return g_variant_new("(asa{sv})", &addresses, &platformData);
}

class GioSessionBus final : public SessionBus {
 public:
  bool showItems(const std::vector<std::filesystem::path>& files) override {
    const Connection bus = connect();
    if (!bus || (!isOwned(bus.get(), managerName) && !isActivatable(bus.get()))) {
      return false;
    }
    constexpr const char* noStartupId = "";
    GVariantBuilder addresses = addressesOf(files);
    return send(bus.get(),
                {managerName,
                 "/org/freedesktop/FileManager1",
                 managerName,
                 "ShowItems",
                 g_variant_new("(ass)", &addresses, noStartupId)});
  }

  bool openInDesktopHost(const std::vector<std::filesystem::path>& files,
                         const Activation& activation) override {
    const Connection bus = connect();
    return bus && isOwned(bus.get(), DesktopHost::name) &&
           send(bus.get(),
                {DesktopHost::name,
                 DesktopHost::path,
                 DesktopHost::interfaceName,
                 files.empty() ? "Activate" : "Open",
                 applicationArguments(files, activation)});
  }
};

}  // namespace

}  // namespace tolvane

extern "C" [[gnu::visibility("default")]] void* tolvaneSessionBus() {
  static tolvane::GioSessionBus bus;
  return &bus;
}
