#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "engine/conversion_engine.h"
#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "formats/format_inspection.h"
#include "formats/text_clipping.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "platform/images/image_decoder.h"
#include "platform/images/image_limits.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

/// Folders that people treat as one document.
std::optional<FileKind> packageKind(std::string_view extension) {
  constexpr std::array<std::pair<std::string_view, FileKind>, 4> packages = {{
      {"rtfd", FileKind::document},
      {"pages", FileKind::document},
      {"key", FileKind::presentation},
      {"numbers", FileKind::spreadsheet},
  }};
  const auto* found =
      std::find_if(packages.begin(), packages.end(), [extension](const auto& package) {
        return package.first == extension;
      });
  return found != packages.end() ? std::optional(found->second) : std::nullopt;
}

bool startsLikePdf(const fs::path& url) {
  constexpr std::string_view signature = "%PDF-";
  return startsWith(FileSystem::readPrefix(url, signature.size()), signature);
}

static_assert(Limits::maxImageArea == maxDecodedPixels, "what is admitted can be decoded");

/// @return nullopt when the file is no raster image.
std::optional<FileInfo> inspectImage(const fs::path& url) {
  const auto header = imageDecoder().probe(url);
  if (!header) {
    return std::nullopt;
  }
  const double area = static_cast<double>(header->width) * header->height;
  if (header->width < 1 || header->height < 1 ||
      std::max(header->width, header->height) > Limits::maxImageSide ||
      area > Limits::maxImageArea) {
    throw ConversionFailure::message(
        "Images must fit within 16,384 pixels per side and 80 megapixels.");
  }
  const std::string type =
      header->extension.empty() ? "Image" : FileNames::upper(header->extension);
  return FileInfo{
      url, FileKind::image, fmt::format("{} × {} · {}", header->width, header->height, type)};
}

void requireAdmissibleSize(std::uint64_t size) {
  if (size < 1 || size > Limits::maxInputBytes) {
    throw ConversionFailure::message("Choose a nonempty file smaller than 256 MB.");
  }
}

AdmittedFile admitResolved(const ConversionEngine& engine, const fs::path& given) {
  if (FileNames::isAddress(given.string())) {
    throw ConversionFailure::message("Choose a local file.");
  }
  const fs::path url = FileSystem::resolved(given);
  const FileSystem::Attributes attributes = FileSystem::attributes(url);
  const std::string extension = FileNames::lowerExtension(url);
  if (const auto kind = packageKind(extension); kind && attributes.isDirectory) {
    return {{url, *kind, FileNames::upper(extension) + " · package"}, nullptr};
  }
  if (!attributes.isRegularFile) {
    throw ConversionFailure::message("Folders and unavailable files are not supported.");
  }
  if (extension == "textclipping") {
    // Only whether it holds text matters here.
    static_cast<void>(UniversalFormats::clippingText(url));
    return {{url, FileKind::document, "Text clipping · document"}, nullptr};
  }
  requireAdmissibleSize(attributes.size);
  if (startsLikePdf(url)) {
    auto document = engine.pdf(url);
    std::string detail = fmt::format("{} pages · PDF", document->pageCount());
    return {{url, FileKind::pdf, std::move(detail)}, std::move(document)};
  }
  if (auto image = inspectImage(url)) {
    return {*std::move(image), nullptr};
  }
  return {UniversalFormats::inspect(url), nullptr};
}

}  // namespace

AdmittedFile ConversionEngine::admit(const fs::path& given) const {
  AdmittedFile file = admitResolved(*this, given);
  file.info.given = given;
  return file;
}

FileInfo ConversionEngine::inspect(const fs::path& url) const {
  return admit(url).info;
}

}  // namespace tolvane
