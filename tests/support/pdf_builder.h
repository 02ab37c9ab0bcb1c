#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tolvane::support {

/// One page of a test PDF. Lengths in points.
struct PdfPage {
  double width = 612;
  double height = 792;
  std::optional<int> rotation{};  ///< absent: the page has no /Rotate of its own
  std::string text{};             ///< Helvetica 24 from the upper left; a line each line
  std::string drawing{};          ///< content operators after the text, such as "0 0 9 9 re f"
  std::optional<std::string> mediaBox{};  ///< instead of [0 0 width height]; "" leaves it out
  std::string entries{};                  ///< more page entries, such as "/CropBox [0 0 9 9]"
  std::optional<std::string> object{};    ///< instead of the page's dictionary, such as "null"
};

/// Writes small PDFs with a correct cross-reference table. Page n, from 1, is the object 2 * n + 2.
///   PdfBuilder().page({.rotation = 90, .text = "Hello"}).write(folder / "a.pdf");
class PdfBuilder {
 public:
  PdfBuilder& page(PdfPage page);
  /// Entries of the page tree's root, which the pages inherit, such as "/Rotate 90".
  PdfBuilder& inherited(const std::string& entries);
  /// Entries of the information dictionary, such as "/Title (Hello)".
  PdfBuilder& information(const std::string& entries);
  /// States a number of pages that is not theirs.
  PdfBuilder& wrongCount(std::size_t count);

  /// An object behind those of the pages: the first one has the number 2 * pages + 4.
  PdfBuilder& object(std::string object);

  [[nodiscard]] std::string bytes() const;
  std::filesystem::path write(const std::filesystem::path& file) const;
  /// Encrypted (AES, 256 bits): opens only with the password.
  std::filesystem::path writeLocked(const std::filesystem::path& file,
                                    const std::string& userPassword) const;
  /// Encrypted, but opens without a password; the one given only lifts restrictions.
  std::filesystem::path writeRestricted(const std::filesystem::path& file,
                                        const std::string& ownerPassword) const;

 private:
  std::vector<PdfPage> pages_;
  std::string inherited_;
  std::string information_;
  std::optional<std::size_t> wrongCount_;
  std::vector<std::string> objects_;
};

}  // namespace tolvane::support
