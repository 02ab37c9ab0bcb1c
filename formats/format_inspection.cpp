#include "formats/format_inspection.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/bytes.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "platform/text/text_encoding.h"

namespace tolvane::UniversalFormats {

namespace {

/// What a file of an extension has to be, beyond what its kind asks for.
enum class Requirement { nothing, zipContainer, plainText };

struct Format {
  std::string_view extension;
  FileKind kind;
  Requirement requirement = Requirement::nothing;
};

constexpr Format formats[] = {
    {"mp4", FileKind::video},
    {"mov", FileKind::video},
    {"m4v", FileKind::video},
    {"mp3", FileKind::audio},
    {"m4a", FileKind::audio},
    {"wav", FileKind::audio},
    {"flac", FileKind::audio},
    {"ogg", FileKind::audio},
    {"opus", FileKind::audio},
    {"aiff", FileKind::audio},
    {"aif", FileKind::audio},
    {"pptx", FileKind::presentation, Requirement::zipContainer},
    {"ppt", FileKind::presentation},
    {"key", FileKind::presentation},
    {"xlsx", FileKind::spreadsheet, Requirement::zipContainer},
    {"xls", FileKind::spreadsheet},
    {"ods", FileKind::spreadsheet, Requirement::zipContainer},
    {"csv", FileKind::spreadsheet, Requirement::plainText},
    {"tsv", FileKind::spreadsheet, Requirement::plainText},
    {"numbers", FileKind::spreadsheet},
    {"epub", FileKind::ebook, Requirement::zipContainer},
    {"srt", FileKind::subtitle, Requirement::plainText},
    {"vtt", FileKind::subtitle, Requirement::plainText},
    {"zip", FileKind::archive},
    {"tar", FileKind::archive},
    {"gz", FileKind::archive},
    {"gzip", FileKind::archive},
    {"rar", FileKind::archive},
    {"7z", FileKind::archive},
    {"docx", FileKind::document, Requirement::zipContainer},
    {"pages", FileKind::document},
    {"md", FileKind::document, Requirement::plainText},
    {"markdown", FileKind::document, Requirement::plainText},
    {"rtf", FileKind::document},
    {"rtfd", FileKind::document},
    {"txt", FileKind::document, Requirement::plainText},
    {"html", FileKind::document, Requirement::plainText},
    {"htm", FileKind::document, Requirement::plainText},
    {"odt", FileKind::document, Requirement::zipContainer},
    {"textclipping", FileKind::document},
};

constexpr std::string_view vectorImage = "svg";

/// What makes an SVG depend on something else, or run something.
constexpr std::string_view refusedMarkup[] = {
    "<!doctype", "<!entity", "<script", "href=", "href ="};

constexpr std::string_view mediaStarts[] = {"ID3", "RIFF", "fLaC", "OggS", "FORM"};
constexpr std::string_view mediaAtoms[] = {"ftyp", "mdat", "moov"};

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool isWebp(std::string_view header) {
  return header.starts_with("RIFF") && header.size() > 11 && header.substr(8, 4) == "WEBP";
}

bool isAvif(std::string_view header) {
  return header.size() >= 8 && header.substr(4, 4) == "ftyp" &&
         (contains(header, "avif") || contains(header, "avis"));
}

bool isBmp(std::string_view header) {
  return header.starts_with("BM");
}

/// Images known by their first bytes alone.
struct SignedImage {
  std::string_view extension;
  bool (*matches)(std::string_view header);
};

constexpr SignedImage signedImages[] = {{"webp", isWebp}, {"avif", isAvif}, {"bmp", isBmp}};

template <typename Row, std::size_t count>
const Row* rowOf(const Row (&rows)[count], std::string_view extension) {
  const Row* const found =
      std::find_if(rows, rows + count, [&](const Row& row) { return row.extension == extension; });
  return found == rows + count ? nullptr : found;
}

/// The beginning of the file: as much as its extension calls for.
class Sample {
 public:
  Sample(const std::filesystem::path& url, std::size_t size)
      : bytes_(FileSystem::readPrefix(url, size)), isText_(TextEncoding::isUtf8(bytes_)) {}

  /// At most 512 bytes.
  [[nodiscard]] std::string_view header() const { return all().substr(0, Limits::headerSample); }
  /// Whether the whole sample is UTF-8.
  [[nodiscard]] bool isText() const { return isText_; }
  [[nodiscard]] bool textContains(std::string_view part) const {
    return isText_ && contains(all(), part);
  }
  [[nodiscard]] std::string lowerText() const { return isText_ ? FileNames::lower(all()) : ""; }

 private:
  [[nodiscard]] std::string_view all() const { return asText(bytes_); }

  Bytes bytes_;
  bool isText_;
};

std::size_t sampleSize(std::string_view extension) {
  const Format* const format = rowOf(formats, extension);
  const bool needsText = extension == vectorImage ||
                         (format != nullptr && format->requirement == Requirement::plainText);
  return needsText ? Limits::textSample : Limits::headerSample;
}

void require(bool holds, std::string sentence) {
  if (!holds) {
    throw ConversionFailure::message(std::move(sentence));
  }
}

std::string detailOf(std::string_view extension, std::string_view rest) {
  return FileNames::upper(extension) + " · " + std::string(rest);
}

/// Files named .svg that are no SVG are left to the general refusal.
bool isVectorImage(std::string_view extension, const Sample& sample) {
  if (extension != vectorImage) {
    return false;
  }
  const std::string text = sample.lowerText();
  if (!contains(text, "<svg")) {
    return false;
  }
  const bool isSelfContained = std::none_of(
      std::begin(refusedMarkup), std::end(refusedMarkup), [&](std::string_view markup) {
        return contains(text, markup);
      });
  require(isSelfContained, "Use a self-contained SVG without scripts or external references.");
  return true;
}

bool isMedia(std::string_view header) {
  const auto startsHeader = [&](std::string_view start) { return header.starts_with(start); };
  if (std::any_of(std::begin(mediaStarts), std::end(mediaStarts), startsHeader)) {
    return true;
  }
  if (header.size() < 8) {
    return false;
  }
  constexpr char frameSync = '\xFF';  // of an MPEG audio frame
  const auto* const atom =
      std::find(std::begin(mediaAtoms), std::end(mediaAtoms), header.substr(4, 4));
  return atom != std::end(mediaAtoms) || header[0] == frameSync;
}

void check(const Format& format, const Sample& sample) {
  const bool isMedium = format.kind == FileKind::video || format.kind == FileKind::audio;
  require(format.requirement != Requirement::zipContainer || sample.header().starts_with("PK"),
          "This file is not a valid " + FileNames::upper(format.extension) + " container.");
  require(format.requirement != Requirement::plainText ||
              (sample.isText() && !contains(sample.header(), std::string_view("\0", 1))),
          "Choose a UTF-8 text file.");
  require(format.kind != FileKind::subtitle || sample.textContains("-->"),
          "No valid subtitle cues were found.");
  require(!isMedium || isMedia(sample.header()),
          "This file does not contain a recognized local media stream.");
}

}  // namespace

FileInfo inspect(const std::filesystem::path& url) {
  const std::string extension = FileNames::lowerExtension(url);
  const Sample sample(url, sampleSize(extension));
  if (isVectorImage(extension, sample)) {
    return {url, FileKind::image, detailOf(extension, "vector image")};
  }
  if (const SignedImage* const image = rowOf(signedImages, extension)) {
    require(image->matches(sample.header()),
            "This is not a valid " + FileNames::upper(extension) + " image.");
    return {url, FileKind::image, detailOf(extension, name(FileKind::image))};
  }
  const Format* const format = rowOf(formats, extension);
  require(format != nullptr,
          "This file type is not supported. Choose a document, image, media file, subtitle or "
          "archive.");
  check(*format, sample);
  return {url, format->kind, detailOf(extension, name(format->kind))};
}

}  // namespace tolvane::UniversalFormats
