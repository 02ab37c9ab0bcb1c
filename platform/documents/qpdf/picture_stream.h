#pragma once

#include "platform/images/bitmap.h"
#include "platform/images/image_decoder.h"

class QPDF;
class QPDFObjectHandle;

/// Pictures as image objects of a PDF.
namespace tolvane::PictureStream {

[[nodiscard]] QPDFObjectHandle of(QPDF& document, const Bitmap& picture);
[[nodiscard]] QPDFObjectHandle of(QPDF& document, const JpegPhoto& photo);

}  // namespace tolvane::PictureStream
