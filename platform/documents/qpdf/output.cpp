#include "platform/documents/qpdf/output.h"

#include <cstddef>

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

namespace tolvane {

namespace {

class IntoBytes : public Pipeline {
 public:
  explicit IntoBytes(Bytes& bytes) : Pipeline("memory", nullptr), bytes_(bytes) {}

  void write(const unsigned char* data, std::size_t length) override {
    bytes_.insert(bytes_.end(), data, data + length);
  }
  void finish() override {}

 private:
  Bytes& bytes_;
};

// Object streams came with this version; an older reader could not open them.
constexpr const char* versionWithObjectStreams = "1.5";

}  // namespace

Bytes written(QPDF& document, const std::string& minimumVersion, Packing packing) {
  Bytes bytes;
  IntoBytes pipeline(bytes);
  QPDFWriter writer(document);
  writer.setOutputPipeline(&pipeline);
  writer.setMinimumPDFVersion(minimumVersion);
  writer.setStreamDataMode(qpdf_s_preserve);
  const bool packs = packing == Packing::smallest && minimumVersion >= versionWithObjectStreams;
  writer.setObjectStreamMode(packs ? qpdf_o_generate : qpdf_o_disable);
  writer.setPreserveEncryption(false);
  writer.write();
  return bytes;
}

}  // namespace tolvane
