#include "formats/text_clipping.h"

#include <optional>
#include <string_view>
#include <utility>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "platform/text/property_list.h"
#include "platform/text/rich_text.h"
#include "platform/text/text_encoding.h"

namespace tolvane::UniversalFormats {

namespace {

constexpr std::string_view richTextType = "public.rtf";

std::optional<std::string> fromMacRoman(BytesView bytes) {
  return TextEncoding::fromMacRoman(bytes);
}

struct ClippedType {
  std::string_view identifier;
  std::optional<std::string> (*decode)(BytesView);
};

/// In order of preference.
constexpr ClippedType clippedTypes[] = {
    {"public.utf8-plain-text", TextEncoding::fromUtf8},
    {"public.utf16-external-plain-text", TextEncoding::fromUtf16},
    {"public.utf16-plain-text", TextEncoding::fromUtf16},
    {"com.apple.traditional-mac-plain-text", fromMacRoman},
    {richTextType, TextEncoding::fromUtf8},
};

ConversionFailure unsupported() {
  return ConversionFailure::message(
      "This legacy or unsupported text clipping must first be saved as TXT in Finder.");
}

PropertyList readList(const std::filesystem::path& url) {
  const std::uint64_t size = FileSystem::attributes(url).size;
  if (size == 0 || size > Limits::maxClippingBytes) {
    throw unsupported();
  }
  try {
    if (auto list = PropertyList::parse(FileSystem::readPrefix(url, Limits::maxClippingBytes))) {
      return std::move(*list);
    }
  } catch (const PlatformError&) {  // whatever keeps it from being read, the remedy is the same
  }
  throw unsupported();
}

/// @return nullptr when `dictionary` has no such key.
const PropertyList* member(const PropertyList::Dictionary& dictionary, std::string_view key) {
  const auto found = dictionary.find(key);
  return found == dictionary.end() ? nullptr : &found->second;
}

const PropertyList::Dictionary& clippedData(const PropertyList& list) {
  const PropertyList::Dictionary* root = list.dictionary();
  const PropertyList* data = root != nullptr ? member(*root, "UTI-Data") : nullptr;
  if (data == nullptr || data->dictionary() == nullptr) {
    throw unsupported();
  }
  return *data->dictionary();
}

std::optional<BytesView> bytesOf(const PropertyList& value) {
  if (value.bytes() != nullptr) {
    return BytesView(*value.bytes());
  }
  return value.text() != nullptr ? std::optional(asBytes(*value.text())) : std::nullopt;
}

/// @return nullopt when the value gives no text and the next type is to be tried.
std::optional<std::string> textOf(const ClippedType& type, const PropertyList& value) {
  const std::optional<BytesView> bytes = bytesOf(value);
  if (type.identifier == richTextType && bytes) {
    if (std::optional<std::string> text = RichText::plainText(asText(*bytes))) {
      return text;
    }
  }
  if (value.text() != nullptr) {
    return *value.text();
  }
  std::optional<std::string> text = bytes ? type.decode(*bytes) : std::nullopt;
  return text && !text->empty() ? std::move(text) : std::nullopt;
}

}  // namespace

std::string clippingText(const std::filesystem::path& url) {
  const PropertyList list = readList(url);
  const PropertyList::Dictionary& data = clippedData(list);
  for (const ClippedType& type : clippedTypes) {
    const PropertyList* value = member(data, type.identifier);
    if (value == nullptr) {
      continue;
    }
    if (std::optional<std::string> text = textOf(type, *value)) {
      return std::move(*text);
    }
  }
  throw ConversionFailure::message(
      "No readable text was found in this clipping. Save it as TXT in Finder first.");
}

}  // namespace tolvane::UniversalFormats
