#pragma once

#include "platform/images/bitmap.h"
#include "platform/images/image_decoder.h"

class QPDF;
class QPDFObjectHandle;

/// Pages that show one picture, one point a pixel. Each returns a page object of the document that
/// is not yet in its page tree.
namespace tolvane::PicturePage {

/// Stored without loss; alpha that is not opaque throughout becomes a soft mask.
[[nodiscard]] QPDFObjectHandle of(QPDF& document, const Bitmap& picture);

/// Stored as it is; the page's content turns it upright.
[[nodiscard]] QPDFObjectHandle of(QPDF& document, const JpegPhoto& photo);

}  // namespace tolvane::PicturePage
