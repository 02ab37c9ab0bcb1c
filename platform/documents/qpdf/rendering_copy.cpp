#include "platform/documents/qpdf/rendering_copy.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>

#include "platform/documents/qpdf/opening.h"
#include "platform/documents/qpdf/output.h"

namespace tolvane {

namespace {

constexpr std::size_t inflationLimit = std::size_t{128} << 20U;

/// Collects one inflated stream; libqpdf takes the exception for a stream that cannot be decoded.
class LimitedText : public Pipeline {
 public:
  explicit LimitedText(std::size_t limit) : Pipeline("inflated", nullptr), limit_(limit) {}

  void write(const unsigned char* data, std::size_t length) override {
    if (length > limit_ - text_.size()) {
      throw std::length_error("the stream inflates to too much");
    }
    text_.append(reinterpret_cast<const char*>(data), length);
  }
  void finish() override {}

  [[nodiscard]] std::string& text() { return text_; }

 private:
  std::size_t limit_;
  std::string text_;
};

bool isDeflatedText(QPDFObjectHandle& object) {
  if (!object.isStream()) {
    return false;
  }
  QPDFObjectHandle dictionary = object.getDict();
  return dictionary.getKey("/Filter").isNameAndEquals("/FlateDecode") &&
         dictionary.getKey("/DecodeParms").isNull() &&
         !dictionary.getKey("/Subtype").isNameAndEquals("/Image");
}

void inflateStreams(QPDF& document) {
  const QPDFObjectHandle none = QPDFObjectHandle::newNull();
  std::size_t left = inflationLimit;
  for (QPDFObjectHandle& object : document.getAllObjects()) {
    if (!isDeflatedText(object)) {
      continue;
    }
    LimitedText inflated(left);
    bool attempted = false;
    if (object.pipeStreamData(&inflated, &attempted, 0, qpdf_dl_generalized, true) && attempted) {
      left -= inflated.text().size();
      object.replaceStreamData(inflated.text(), none, none);
    }
  }
}

/// One flat list of the pages that libqpdf counts, without crop boxes.
void simplifyPages(QPDF& document) {
  document.pushInheritedAttributesToPage();
  QPDFObjectHandle tree = document.getRoot().getKey("/Pages");
  QPDFObjectHandle kids = QPDFObjectHandle::newArray();
  for (QPDFObjectHandle page : document.getAllPages()) {
    if (!page.isDictionary()) {
      page = document.makeIndirectObject(QPDFObjectHandle::parse("<< /Type /Page >>"));
    }
    page.removeKey("/CropBox");
    page.replaceKey("/Parent", tree);
    kids.appendItem(page);
  }
  tree.replaceKey("/Kids", kids);
  tree.replaceKey("/Count", QPDFObjectHandle::newInteger(kids.getArrayNItems()));
}

}  // namespace

Bytes copyForRendering(const std::shared_ptr<SourceFile>& file) {
  const std::shared_ptr<QPDF> document = openedDocument(file);
  simplifyPages(*document);
  inflateStreams(*document);
  return written(*document, document->getPDFVersion(), Packing::quickest);
}

}  // namespace tolvane
