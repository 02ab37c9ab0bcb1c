#include "catalog/file_capability.h"

#include <gtest/gtest.h>

#include "catalog/capability_catalog.h"

namespace tolvane {
namespace {

TEST(FileCapabilityTest, SendsTenKeys) {
  FileCapability offer;
  offer.id = "tool.split";
  offer.title = "Split";
  offer.ext = "pdf";
  offer.summary = "Pdf · local operation";
  offer.combined = true;
  offer.nativeAction = "split_pdf";
  offer.fields = {CapabilityCatalog::field("ocr", "OCR", true, "bool")};
  const Value ocr =
      Value::Map{{"key", "ocr"}, {"label", "OCR"}, {"default", true}, {"type", "bool"}};
  Value::Map expected = {{"id", "tool.split"},
                         {"title", "Split"},
                         {"extension", "pdf"},
                         {"summary", "Pdf · local operation"},
                         {"available", true},
                         {"requirement", ""},
                         {"warning", ""},
                         {"combined", true},
                         {"nativeAction", "split_pdf"},
                         {"fields", Value::List{ocr}}};
  EXPECT_EQ(offer.json(), Value(expected));

  expected["available"] = false;
  expected["requirement"] = *(offer.requirement = "Requires local qpdf.");
  expected["warning"] = offer.warning = "Take care.";
  offer.nativeAction.reset();
  expected["nativeAction"] = "";
  EXPECT_EQ(offer.json(), Value(expected));
}

}  // namespace
}  // namespace tolvane
