#include "engine/native_action.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tolvane {

std::optional<NativeAction> nativeAction(std::string_view id) {
  constexpr std::array<std::pair<std::string_view, NativeAction>, 12> actions = {{
      {"pdf_png", NativeAction::pdfPng},
      {"pdf_jpeg", NativeAction::pdfJpeg},
      {"rotate_pdf", NativeAction::rotatePdf},
      {"merge_pdf", NativeAction::mergePdf},
      {"split_pdf", NativeAction::splitPdf},
      {"edit_pdf", NativeAction::editPdf},
      {"extract_text", NativeAction::extractText},
      {"ocr", NativeAction::ocr},
      {"image_png", NativeAction::imagePng},
      {"image_jpeg", NativeAction::imageJpeg},
      {"images_pdf", NativeAction::imagesPdf},
      {"resize", NativeAction::resize},
  }};
  const auto* found = std::find_if(
      actions.begin(), actions.end(), [id](const auto& action) { return action.first == id; });
  return found != actions.end() ? std::optional(found->second) : std::nullopt;
}

FileKind inputKind(NativeAction action) {
  return action < NativeAction::imagePng ? FileKind::pdf : FileKind::image;
}

}  // namespace tolvane
