#include "platform/desktop/accessibility/accessibility_messages.h"

#include <array>
#include <cstddef>
#include <gio/gio.h>
#include <memory>

namespace tolvane::AccessibilityMessages {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* selection = "org.a11y.atspi.Selection";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* fileManager = "org.freedesktop.FileManager1";
constexpr guint32 ofTheScreen = 0;  // ATSPI_COORD_TYPE_SCREEN
constexpr guint32 nodeChildOf = 7;  // ATSPI_RELATION_NODE_CHILD_OF
constexpr gint32 toTheEnd = -1;

struct Unref {
  void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Value = std::unique_ptr<GVariant, Unref>;

Message property(const AccessibleReference& element, const char* interface, const char* name) {
  return {
      false, element.bus, element.path, properties, "Get", g_variant_new("(ss)", interface, name)};
}

/// What is asked of a bus name rather than of an element.
Message ofOwner(const AccessibleQuestion& question) {
  const std::string& bus = question.element.bus;
  switch (question.ask) {
    case Ask::openLocations:
      return {true,
              bus,
              "/org/freedesktop/FileManager1",
              properties,
              "Get",
              g_variant_new("(ss)", fileManager, "OpenWindowsWithLocations")};
    case Ask::hasOpenLocation:
      return {true,
              bus,
              question.element.path,
              "org.kde.dolphin.MainWindow",
              "isUrlOpen",
              g_variant_new("(s)", question.address.c_str())};
    default:
      return {bus.front() != ':',
              "org.freedesktop.DBus",
              "/org/freedesktop/DBus",
              "org.freedesktop.DBus",
              "GetConnectionUnixProcessID",
              g_variant_new("(s)", bus.c_str())};
  }
}

bool isOf(GVariant& value, const char* type) {
  return g_variant_is_of_type(&value, G_VARIANT_TYPE(type)) != FALSE;
}

void addReference(GVariant& pair, AccessibleAnswer& to) {
  const gchar* bus = nullptr;
  const gchar* path = nullptr;
  g_variant_get(&pair, "(&s&o)", &bus, &path);
  to.references.push_back({bus, path});
}

void addReferences(GVariant& list, AccessibleAnswer& to) {
  for (gsize i = 0; i < g_variant_n_children(&list); ++i) {
    addReference(*Value(g_variant_get_child_value(&list, i)), to);
  }
}

void addParentRows(GVariant& relations, AccessibleAnswer& to) {
  for (gsize i = 0; i < g_variant_n_children(&relations); ++i) {
    const Value relation(g_variant_get_child_value(&relations, i));
    const Value kind(g_variant_get_child_value(relation.get(), 0));
    if (g_variant_get_uint32(kind.get()) == nodeChildOf) {
      addReferences(*Value(g_variant_get_child_value(relation.get(), 1)), to);
    }
  }
}

void addLocations(GVariant& windows, AccessibleAnswer& to) {
  for (gsize i = 0; i < g_variant_n_children(&windows); ++i) {
    const Value window(g_variant_get_child_value(&windows, i));
    const gchar* path = nullptr;
    g_variant_get_child(window.get(), 0, "&s", &path);
    const Value tabs(g_variant_get_child_value(window.get(), 1));
    std::vector<std::string>& addresses = to.locations[path];
    for (gsize tab = 0; tab < g_variant_n_children(tabs.get()); ++tab) {
      const gchar* address = nullptr;
      g_variant_get_child(tabs.get(), tab, "&s", &address);
      addresses.emplace_back(address);
    }
  }
}

/// AT-SPI sends the set of states as two words of 32 bits.
std::uint64_t stateBits(GVariant& words) {
  std::uint64_t bits = 0;
  for (gsize i = 0; i < g_variant_n_children(&words) && i < 2; ++i) {
    guint32 word = 0;
    g_variant_get_child(&words, i, "u", &word);
    bits |= std::uint64_t{word} << (32 * i);
  }
  return bits;
}

/// @param value not a variant.
AccessibleAnswer answerIn(GVariant& value) {
  AccessibleAnswer answer;
  answer.isAnswered = true;
  if (isOf(value, "u")) {
    answer.number = g_variant_get_uint32(&value);
  } else if (isOf(value, "i")) {
    answer.number = static_cast<std::uint64_t>(std::max(0, g_variant_get_int32(&value)));
  } else if (isOf(value, "b")) {
    answer.number = g_variant_get_boolean(&value) != FALSE ? 1 : 0;
  } else if (isOf(value, "s")) {
    answer.text = g_variant_get_string(&value, nullptr);
  } else if (isOf(value, "au")) {
    answer.number = stateBits(value);
  } else if (isOf(value, "(so)")) {
    addReference(value, answer);
  } else if (isOf(value, "a(so)")) {
    addReferences(value, answer);
  } else if (isOf(value, "a(ua(so))")) {
    addParentRows(value, answer);
  } else if (isOf(value, "a{sas}")) {
    addLocations(value, answer);
  } else if (isOf(value, "(iiii)")) {
    std::array<gint32, 4> sides = {};
    g_variant_get(&value, "(iiii)", &sides[0], &sides[1], &sides[2], &sides[3]);
    answer.extents = {double(sides[0]), double(sides[1]), double(sides[2]), double(sides[3])};
  } else {
    answer.isAnswered = false;
  }
  return answer;
}

const char* formOf(Ask ask) {
  switch (ask) {
    case Ask::role:
    case Ask::processIdentifier:
      return "u";
    case Ask::selectedCount:
      return "i";
    case Ask::hasOpenLocation:
      return "b";
    case Ask::states:
      return "au";
    case Ask::children:
      return "a(so)";
    case Ask::selectedChild:
      return "(so)";
    case Ask::parentRow:
      return "a(ua(so))";
    case Ask::extents:
      return "(iiii)";
    case Ask::openLocations:
      return "a{sas}";
    case Ask::name:
    case Ask::text:
    case Ask::toolkit:
      break;
  }
  return "s";
}

}  // namespace

Message message(const AccessibleQuestion& question) {
  const AccessibleReference& element = question.element;
  const auto call = [&element](const char* interface, const char* method, GVariant* arguments) {
    return Message{false, element.bus, element.path, interface, method, arguments};
  };
  switch (question.ask) {
    case Ask::role:
      return call(accessible, "GetRole", nullptr);
    case Ask::states:
      return call(accessible, "GetState", nullptr);
    case Ask::children:
      return call(accessible, "GetChildren", nullptr);
    case Ask::parentRow:
      return call(accessible, "GetRelationSet", nullptr);
    case Ask::text:
      return call("org.a11y.atspi.Text", "GetText", g_variant_new("(ii)", 0, toTheEnd));
    case Ask::extents:
      return call("org.a11y.atspi.Component", "GetExtents", g_variant_new("(u)", ofTheScreen));
    case Ask::selectedChild:
      return call(selection, "GetSelectedChild", g_variant_new("(i)", question.index));
    case Ask::selectedCount:
      return property(element, selection, "NSelectedChildren");
    case Ask::toolkit:
      return property(element, "org.a11y.atspi.Application", "ToolkitName");
    case Ask::name:
      return property(element, accessible, "Name");
    case Ask::processIdentifier:
    case Ask::openLocations:
    case Ask::hasOpenLocation:
      break;
  }
  return ofOwner(question);
}

AccessibleAnswer answer(Ask ask, GVariant& reply) {
  if (g_variant_n_children(&reply) != 1) {
    return {};
  }
  Value value(g_variant_get_child_value(&reply, 0));
  if (isOf(*value, "v")) {
    value.reset(g_variant_get_variant(value.get()));
  }
  return isOf(*value, formOf(ask)) ? answerIn(*value) : AccessibleAnswer();
}

}  // namespace tolvane::AccessibilityMessages
