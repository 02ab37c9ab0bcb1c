#include "platform/documents/qpdf/scanned_page.h"

#include <algorithm>
#include <memory>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include "platform/documents/qpdf/page_content.h"
#include "platform/images/jpeg_photo.h"

namespace tolvane::ScannedPage {

namespace {

bool isJpegStream(QPDFObjectHandle object) {
  if (!object.isImage()) {
    return false;
  }
  QPDFObjectHandle filter = object.getDict().getKey("/Filter");
  return filter.isNameAndEquals("/DCTDecode") ||
         (filter.isArray() && filter.getArrayNItems() == 1 &&
          filter.getArrayItem(0).isNameAndEquals("/DCTDecode"));
}

/// The number of its components; 0 when its colors or its opacity are not those of the JPEG alone.
int plainComponents(QPDFObjectHandle picture) {
  QPDFObjectHandle dictionary = picture.getDict();
  for (const char* key : {"/SMask", "/Mask", "/Decode", "/DecodeParms", "/OC", "/SMaskInData"}) {
    if (!dictionary.getKey(key).isNull()) {
      return 0;
    }
  }
  QPDFObjectHandle space = dictionary.getKey("/ColorSpace");
  if (space.isNameAndEquals("/DeviceGray")) {
    return 1;
  }
  return space.isNameAndEquals("/DeviceRGB") ? 3 : 0;
}

/// Whether the page has a photo at all: a look that spares most pages the parsing.
bool mayBeScan(QPDFObjectHandle resources, QPDFObjectHandle annotations) {
  QPDFObjectHandle objects =
      resources.isDictionary() ? resources.getKey("/XObject") : QPDFObjectHandle::newNull();
  if (!objects.isDictionary() || (annotations.isArray() && annotations.getArrayNItems() > 0)) {
    return false;
  }
  const auto entries = objects.getDictAsMap();
  return std::any_of(
      entries.begin(), entries.end(), [](const auto& entry) { return isJpegStream(entry.second); });
}

/// The EXIF orientation that says the same as a rotation; nullopt when it is no quarter turn.
std::optional<int> orientationOf(int rotation) {
  switch ((rotation % 360 + 360) % 360) {
    case 0:
      return 1;
    case 90:
      return 6;
    case 180:
      return 3;
    case 270:
      return 8;
    default:
      return std::nullopt;
  }
}

std::optional<JpegPhoto> photoIn(QPDFObjectHandle picture) {
  const int components = plainComponents(picture);
  if (components == 0 || !isJpegStream(picture)) {
    return std::nullopt;
  }
  const std::shared_ptr<Buffer> data = picture.getRawStreamData();
  std::optional<JpegPhoto> photo = jpegPhoto({data->getBuffer(), data->getSize()});
  QPDFObjectHandle dictionary = picture.getDict();
  const bool isAsStated = photo && photo->components == components &&
                          dictionary.getKey("/Width").getIntValueAsInt() == photo->width &&
                          dictionary.getKey("/Height").getIntValueAsInt() == photo->height;
  return isAsStated ? std::move(photo) : std::nullopt;
}

}  // namespace

std::optional<JpegPhoto> photoOf(const QPDFObjectHandle& page) {
  QPDFPageObjectHelper helper(page);
  const QPDFObjectHandle resources = helper.getAttribute("/Resources", false);
  const std::optional<PageGeometry::Box> area = PageGeometry::mediaBox(page);
  const std::optional<int> orientation = orientationOf(PageGeometry::of(page).rotation);
  if (!area || !orientation || !mayBeScan(resources, helper.getAttribute("/Annots", false))) {
    return std::nullopt;
  }
  PageContent content(resources, *area);
  helper.parseContents(&content);
  const std::optional<PageContent::Picture> picture = content.onlyPicture();
  if (!picture || !covers(picture->box, *area) || !covers(*area, picture->box)) {
    return std::nullopt;
  }
  std::optional<JpegPhoto> photo = photoIn(picture->object);
  if (photo) {
    photo->orientation = *orientation;
  }
  return photo;
}

}  // namespace tolvane::ScannedPage
