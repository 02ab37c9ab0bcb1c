#pragma once

#include <string>

#include "platform/files/bytes.h"

class QPDF;

namespace tolvane {

enum class Packing {
  quickest,  // every object by itself
  smallest   // in object streams, where the minimum version knows them
};

/// Writes a document into memory: not encrypted, streams as they are.
/// @param minimumVersion of the format, such as "1.4"; the document's own counts when it is higher.
[[nodiscard]] Bytes written(QPDF& document, const std::string& minimumVersion, Packing packing);

}  // namespace tolvane
