#include "platform/desktop/accessibility/accessibility_messages.h"

#include <array>
#include <gio/gio.h>
#include <memory>

#include "tests/fuzz/reader.h"

namespace {

using tolvane::Ask;

struct Form {
  Ask ask;
  const char* type;  ///< of the reply, as an application that follows the rules sends it
};
constexpr std::array forms = {Form{Ask::role, "(u)"},
                              Form{Ask::states, "(au)"},
                              Form{Ask::name, "(v)"},
                              Form{Ask::text, "(s)"},
                              Form{Ask::children, "(a(so))"},
                              Form{Ask::extents, "((iiii))"},
                              Form{Ask::parentRow, "(a(ua(so)))"},
                              Form{Ask::selectedCount, "(v)"},
                              Form{Ask::selectedChild, "((so))"},
                              Form{Ask::openLocations, "(v)"},
                              Form{Ask::hasOpenLocation, "(b)"}};

struct Unref {
  void operator()(GVariant* value) const { g_variant_unref(value); }
};

}  // namespace

/// Each question gets each form of reply, made of bytes that nobody has checked.
void read(tolvane::BytesView input) {
  for (const Form& sent : forms) {
    const std::unique_ptr<GBytes, decltype(&g_bytes_unref)> bytes(
        g_bytes_new(input.data(), input.size()), g_bytes_unref);
    const std::unique_ptr<GVariant, Unref> reply(g_variant_ref_sink(
        g_variant_new_from_bytes(G_VARIANT_TYPE(sent.type), bytes.get(), FALSE)));
    for (const Form& asked : forms) {
      static_cast<void>(tolvane::AccessibilityMessages::answer(asked.ask, *reply));
    }
  }
}
