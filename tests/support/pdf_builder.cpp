#include "tests/support/pdf_builder.h"

#include <cstddef>
#include <fstream>
#include <utility>

#include <fmt/format.h>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

namespace tolvane::support {

namespace {

namespace fs = std::filesystem;

std::string stream(const std::string& content) {
  return fmt::format("<< /Length {} >>\nstream\n{}\nendstream", content.size(), content);
}

std::string escaped(const std::string& text) {
  std::string result;
  for (const char character : text) {
    if (character == '(' || character == ')' || character == '\\') {
      result += '\\';
    }
    result += character == '\n' ? std::string(") Tj T* (") : std::string(1, character);
  }
  return result;
}

std::string contentOf(const PdfPage& page) {
  std::string content;
  if (!page.text.empty()) {
    content = fmt::format(
        "BT /F1 24 Tf 30 TL 36 {} Td ({}) Tj ET\n", page.height - 60, escaped(page.text));
  }
  return content + page.drawing;
}

std::string pageObject(const PdfPage& page, int contents) {
  if (page.object) {
    return *page.object;
  }
  const std::string box =
      page.mediaBox.value_or(fmt::format("[0 0 {} {}]", page.width, page.height));
  return fmt::format("<< /Type /Page /Parent 2 0 R{}{} /Contents {} 0 R {} >>",
                     box.empty() ? "" : " /MediaBox " + box,
                     page.rotation ? fmt::format(" /Rotate {}", *page.rotation) : "",
                     contents,
                     page.entries);
}

/// Objects in order, numbered from 1, with header, table and trailer.
std::string fileOf(const std::vector<std::string>& objects, const std::string& information) {
  std::string file = "%PDF-1.4\n";
  std::string table = "0000000000 65535 f \n";
  for (std::size_t index = 0; index < objects.size(); ++index) {
    table += fmt::format("{:010} 00000 n \n", file.size());
    file += fmt::format("{} 0 obj\n{}\nendobj\n", index + 1, objects[index]);
  }
  return fmt::format(
      "{0}xref\n0 {1}\n{2}trailer\n<< /Size {1} /Root 1 0 R /Info << {4} >> >>\nstartxref\n{3}\n"
      "%%EOF\n",
      file,
      objects.size() + 1,
      table,
      file.size(),
      information);
}

fs::path writeEncrypted(const std::string& plain,
                        const fs::path& file,
                        const std::string& userPassword,
                        const std::string& ownerPassword) {
  QPDF document;
  document.processMemoryFile("plain", plain.data(), plain.size());
  QPDFWriter writer(document, file.c_str());
  writer.setR6EncryptionParameters(userPassword.c_str(),
                                   ownerPassword.c_str(),
                                   true,
                                   false,
                                   false,
                                   false,
                                   false,
                                   false,
                                   qpdf_r3p_none,
                                   true);
  writer.write();
  return file;
}

}  // namespace

PdfBuilder& PdfBuilder::page(PdfPage page) {
  pages_.push_back(std::move(page));
  return *this;
}

PdfBuilder& PdfBuilder::inherited(const std::string& entries) {
  inherited_ = entries;
  return *this;
}

PdfBuilder& PdfBuilder::information(const std::string& entries) {
  information_ = entries;
  return *this;
}

PdfBuilder& PdfBuilder::wrongCount(std::size_t count) {
  wrongCount_ = count;
  return *this;
}

PdfBuilder& PdfBuilder::object(std::string object) {
  objects_.push_back(std::move(object));
  return *this;
}

std::string PdfBuilder::bytes() const {
  std::string kids;
  std::vector<std::string> objects = {
      "<< /Type /Catalog /Pages 2 0 R >>",
      "",
      "<< /Font << /F1 << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >> >>"};
  for (const PdfPage& page : pages_) {
    const int number = static_cast<int>(objects.size()) + 1;
    kids += fmt::format("{} 0 R ", number);
    objects.push_back(pageObject(page, number + 1));
    objects.push_back(stream(contentOf(page)));
  }
  objects[1] = fmt::format("<< /Type /Pages /Count {} /Kids [{}] /Resources 3 0 R {} >>",
                           wrongCount_.value_or(pages_.size()),
                           kids,
                           inherited_);
  objects.insert(objects.end(), objects_.begin(), objects_.end());
  return fileOf(objects, information_);
}

fs::path PdfBuilder::write(const fs::path& file) const {
  std::ofstream(file, std::ios::binary) << bytes();
  return file;
}

fs::path PdfBuilder::writeLocked(const fs::path& file, const std::string& userPassword) const {
  return writeEncrypted(bytes(), file, userPassword, userPassword + "-owner");
}

fs::path PdfBuilder::writeRestricted(const fs::path& file, const std::string& ownerPassword) const {
  return writeEncrypted(bytes(), file, "", ownerPassword);
}

}  // namespace tolvane::support
