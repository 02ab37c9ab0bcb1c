#pragma once

#include <optional>

#include "platform/images/image_decoder.h"

class QPDFObjectHandle;

/// Pages that show one JPEG photo from edge to edge and nothing else that can be seen: scans, with
/// or without the invisible text of a recognizer. Their photo can be decoded at the size in which
/// it is wanted, which takes half the time of painting the page.
namespace tolvane::ScannedPage {

/// @return the photo, of one or three components without a colour profile; its orientation is that
/// in which the page shows it. nullopt for every other page, and on any doubt.
[[nodiscard]] std::optional<JpegPhoto> photoOf(const QPDFObjectHandle& page);

}  // namespace tolvane::ScannedPage
