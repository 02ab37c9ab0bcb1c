#pragma once

#include <memory>

#include "platform/documents/qpdf/source_file.h"
#include "platform/files/bytes.h"

namespace tolvane {

/// The document as the page reader likes it: with a true number of pages and an empty page for each
/// unreadable one, because it believes the file's number and passes over what is no page; without
/// crop boxes, because it paints the crop box where the media box is wanted; and with inflated
/// streams, because it inflates slowly (text pages render and read up to twice as fast). Pictures
/// stay compressed, and so does the rest when the streams inflate to very much.
[[nodiscard]] Bytes copyForRendering(const std::shared_ptr<SourceFile>& file);

}  // namespace tolvane
