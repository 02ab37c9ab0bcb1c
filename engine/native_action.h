#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "engine/primitives/file_info.h"

namespace tolvane {

/// What the engine does by itself, without outside programs.
enum class NativeAction {
  pdfPng,
  pdfJpeg,
  rotatePdf,
  mergePdf,
  splitPdf,
  editPdf,
  extractText,
  ocr,
  imagePng,
  imageJpeg,
  imagesPdf,
  resize
};

/// @param id "pdf_png", "merge_pdf", ... @return nullopt for an unknown id.
[[nodiscard]] std::optional<NativeAction> nativeAction(std::string_view id);

/// What every input of the action must be: FileKind::pdf or FileKind::image.
[[nodiscard]] FileKind inputKind(NativeAction action);

/// Keys of the options that change what the action does.
[[nodiscard]] std::span<const std::string_view> optionsOf(NativeAction action);

}  // namespace tolvane
