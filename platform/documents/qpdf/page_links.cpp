#include "platform/documents/qpdf/page_links.h"

#include <algorithm>

#include <qpdf/QPDF.hh>

namespace tolvane {

namespace {

/// What a link annotation leads to, itself or through its action: an array that begins with the
/// page. Null when it leads elsewhere.
QPDFObjectHandle destinationOf(QPDFObjectHandle annotation) {
  if (!annotation.isDictionary()) {
    return QPDFObjectHandle::newNull();
  }
  QPDFObjectHandle action = annotation.getKey("/A");
  const bool acts = action.isDictionary() && action.getKey("/S").isNameAndEquals("/GoTo");
  QPDFObjectHandle destination = acts ? action.getKey("/D") : annotation.getKey("/Dest");
  const bool explicitly = destination.isArray() && destination.getArrayNItems() > 0;
  return explicitly ? destination : QPDFObjectHandle::newNull();
}

int annotationCount(QPDFObjectHandle annotations) {
  return annotations.isArray() ? annotations.getArrayNItems() : 0;
}

}  // namespace

struct PageLinks::Link {
  QPDFObjectHandle destination;  // of the copied annotation
  PageId target;
};

PageLinks::PageLinks() = default;

PageLinks::~PageLinks() = default;

PageLinks::PageId PageLinks::idOf(const QPDFObjectHandle& page) {
  return {page.getOwningQPDF(), page.getObjectID()};
}

void PageLinks::add(QPDFObjectHandle page, QPDFObjectHandle copy) {
  copies_.emplace(idOf(page), copy.getObjectID());
  QPDFObjectHandle annotations = page.getKey("/Annots");
  QPDFObjectHandle copied = copy.getKey("/Annots");
  const int count = std::min(annotationCount(annotations), annotationCount(copied));
  for (int index = 0; index < count; ++index) {
    QPDFObjectHandle original = destinationOf(annotations.getArrayItem(index));
    QPDFObjectHandle destination = destinationOf(copied.getArrayItem(index));
    if (original.isArray() && destination.isArray() && original.getArrayItem(0).isIndirect()) {
      links_.push_back({destination, idOf(original.getArrayItem(0))});
    }
  }
}

void PageLinks::connect(QPDF& document) {
  for (Link& link : links_) {
    const auto copy = copies_.find(link.target);
    if (copy != copies_.end()) {
      link.destination.setArrayItem(0, document.getObjectByID(copy->second, 0));
    }
  }
}

}  // namespace tolvane
