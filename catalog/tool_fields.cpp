#include "catalog/tool_fields.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <variant>

#include "catalog/capability_catalog.h"

namespace tolvane::CapabilityCatalog {

namespace {

struct FieldRow {
  std::string_view key;
  std::string_view label;
  std::variant<int, double, std::string_view> fallback;
  std::string_view type;
};

constexpr std::array quality = {FieldRow{"quality", "Quality (0.1–1)", 0.75, "number"}};
constexpr std::array rectangle = {FieldRow{"x", "Left (pixels)", 0, "number"},
                                  FieldRow{"y", "Top (pixels)", 0, "number"},
                                  FieldRow{"width", "Width (pixels)", 100, "number"},
                                  FieldRow{"height", "Height (pixels)", 100, "number"}};
constexpr std::array period = {FieldRow{"start", "Start (seconds)", 0, "number"},
                               FieldRow{"end", "End (seconds)", 5, "number"}};
constexpr std::array speed = {FieldRow{"speed", "Playback speed (0.25–4)", 1.5, "number"}};
constexpr std::array moment = {FieldRow{"start", "Time (seconds)", 0, "number"}};
constexpr std::array segment = {FieldRow{"seconds", "Segment length (seconds)", 30, "number"}};
constexpr std::array channels = {FieldRow{"channels", "Channels (1 or 2)", 1, "number"}};
constexpr FieldRow color = {"color", "Color (#RRGGBB)", "#FFFFFF", "text"};
constexpr std::array background = {color};
constexpr std::array annotation = {color,
                                   FieldRow{"text", "Annotation", "Note", "text"},
                                   FieldRow{"x", "Left (pixels)", 20, "number"},
                                   FieldRow{"y", "Top (pixels)", 20, "number"}};
constexpr std::array shape = {
    FieldRow{"maxDimension", "Maximum dimension (pixels)", 1600, "number"},
    FieldRow{"rotation", "Rotation (0, 90, 180, 270)", 0, "number"}};

struct ToolRow {
  std::string_view tool;
  std::span<const FieldRow> fields;
};

constexpr std::array<ToolRow, 12> toolTable = {{{"compress", quality},
                                                {"crop", rectangle},
                                                {"redact", rectangle},
                                                {"trim", period},
                                                {"bleep", period},
                                                {"speed", speed},
                                                {"snapshot", moment},
                                                {"split", segment},
                                                {"channels", channels},
                                                {"background", background},
                                                {"annotate", annotation},
                                                {"edit", shape}}};

}  // namespace

Value::List toolFields(FileKind kind, std::string_view tool) {
  Value::List fields;
  // A PDF is compressed and split without settings.
  const auto* row =
      std::find_if(toolTable.begin(), toolTable.end(), [tool](const ToolRow& candidate) {
        return candidate.tool == tool;
      });
  if (kind == FileKind::pdf || row == toolTable.end()) {
    return fields;
  }
  for (const FieldRow& option : row->fields) {
    Value fallback = std::visit([](const auto& value) { return Value(value); }, option.fallback);
    fields.push_back(field(option.key, option.label, std::move(fallback), option.type));
  }
  return fields;
}

}  // namespace tolvane::CapabilityCatalog
