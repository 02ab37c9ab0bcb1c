#include "engine/native_action.h"

#include <algorithm>
#include <array>

namespace tolvane {

namespace {

using Keys = std::span<const std::string_view>;

constexpr auto encoding = std::to_array<std::string_view>({"quality"});
constexpr auto selecting = std::to_array<std::string_view>({"range"});
constexpr auto arranging = std::to_array<std::string_view>({"pages", "rotations"});
constexpr auto resizing = std::to_array<std::string_view>({"maxDimension"});

struct Entry {
  std::string_view id;
  NativeAction action;
  FileKind inputs;
  Keys options;
};

constexpr std::array<Entry, 12> actions = {{
    {"pdf_png", NativeAction::pdfPng, FileKind::pdf, {}},
    {"pdf_jpeg", NativeAction::pdfJpeg, FileKind::pdf, encoding},
    {"rotate_pdf", NativeAction::rotatePdf, FileKind::pdf, {}},
    {"merge_pdf", NativeAction::mergePdf, FileKind::pdf, {}},
    {"split_pdf", NativeAction::splitPdf, FileKind::pdf, selecting},
    {"edit_pdf", NativeAction::editPdf, FileKind::pdf, arranging},
    {"extract_text", NativeAction::extractText, FileKind::pdf, {}},
    {"ocr", NativeAction::ocr, FileKind::pdf, {}},
    {"image_png", NativeAction::imagePng, FileKind::image, {}},
    {"image_jpeg", NativeAction::imageJpeg, FileKind::image, encoding},
    {"images_pdf", NativeAction::imagesPdf, FileKind::image, {}},
    {"resize", NativeAction::resize, FileKind::image, resizing},
}};

const Entry& entryOf(NativeAction action) {
  return *std::find_if(actions.begin(), actions.end(), [action](const Entry& entry) {
    return entry.action == action;
  });
}

}  // namespace

std::optional<NativeAction> nativeAction(std::string_view id) {
  const auto* found = std::find_if(
      actions.begin(), actions.end(), [id](const Entry& entry) { return entry.id == id; });
  return found != actions.end() ? std::optional(found->action) : std::nullopt;
}

FileKind inputKind(NativeAction action) {
  return entryOf(action).inputs;
}

Keys optionsOf(NativeAction action) {
  return entryOf(action).options;
}

}  // namespace tolvane
