#pragma once

#include <memory>

#include "platform/documents/qpdf/source_file.h"

class InputSource;

namespace tolvane {

/// What libqpdf reads a SourceFile through.
[[nodiscard]] std::shared_ptr<InputSource> inputFrom(std::shared_ptr<SourceFile> file);

}  // namespace tolvane
