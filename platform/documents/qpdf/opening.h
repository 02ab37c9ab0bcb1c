#pragma once

#include <memory>

#include "platform/documents/qpdf/source_file.h"

class QPDF;

namespace tolvane {

/// A document of libqpdf's that reads from the file as it goes and keeps its warnings to itself.
/// Throws what libqpdf throws.
[[nodiscard]] std::shared_ptr<QPDF> openedDocument(const std::shared_ptr<SourceFile>& file);

}  // namespace tolvane
