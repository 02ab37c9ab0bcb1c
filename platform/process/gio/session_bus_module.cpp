#include <algorithm>
#include <gio/gio.h>
#include <memory>
#include <string_view>

#include "platform/process/session_bus.h"

namespace tolvane {

namespace {

constexpr const char* managerName = "org.freedesktop.FileManager1";
constexpr int maxWait = 250;  // ms for one answer of the bus itself, which takes less than 1 ms

struct Unref {
  void operator()(GDBusConnection* object) const { g_object_unref(object); }
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
  void operator()(char** strings) const { g_strfreev(strings); }
  void operator()(char* string) const { g_free(string); }
};
using Connection = std::unique_ptr<GDBusConnection, Unref>;
using Variant = std::unique_ptr<GVariant, Unref>;

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
                                             maxWait,
                                             nullptr,
                                             nullptr));
}

bool isOwned(GDBusConnection* bus) {
  const Variant answer = ask(bus, "NameHasOwner", g_variant_new("(s)", managerName), "(b)");
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

GVariant* addressesOf(const std::vector<std::filesystem::path>& files) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("as"));
  for (const std::filesystem::path& file : files) {
    const std::unique_ptr<char, Unref> address(g_filename_to_uri(file.c_str(), nullptr, nullptr));
    if (address) {
      g_variant_builder_add(&builder, "s", address.get());
    }
  }
  constexpr const char* noStartupId = "";
  return g_variant_new("(ass)", &builder, noStartupId);
}

class GioSessionBus final : public SessionBus {
 public:
  bool showItems(const std::vector<std::filesystem::path>& files) override {
    const Connection bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!bus) {
      return false;
    }
    // The end of the bus must not be ours.
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    if (!isOwned(bus.get()) && !isActivatable(bus.get())) {
      return false;
    }
    g_dbus_connection_call(bus.get(),
                           managerName,
                           "/org/freedesktop/FileManager1",
                           managerName,
                           "ShowItems",
                           addressesOf(files),
                           nullptr,
                           G_DBUS_CALL_FLAGS_NONE,
                           -1,
                           nullptr,
                           nullptr,
                           nullptr);
    // Leaves this process before it may end.
    return g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr) != FALSE;
  }
};

}  // namespace

}  // namespace tolvane

extern "C" [[gnu::visibility("default")]] void* tolvaneSessionBus() {
  static tolvane::GioSessionBus bus;
  return &bus;
}
