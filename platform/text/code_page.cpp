#include "platform/text/code_page.h"

#include <algorithm>
#include <string_view>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <vector>

#include "platform/files/platform_error.h"
#include "platform/text/utf16_joiner.h"

namespace tolvane {

namespace {

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using OwnedConverter = std::unique_ptr<UConverter, CloseConverter>;

struct SpecialName {
  int number;
  std::string_view name;
};

/// Code pages that the converter library knows under neither "windows-N" nor "ibm-N".
constexpr SpecialName specialNames[] = {
    {CodePage::macRoman, "macintosh"},
    {10006, "x-mac-greek"},
    {10007, "x-mac-cyrillic"},
    {10029, "x-mac-centraleurroman"},
    {10081, "x-mac-turkish"},
    {CodePage::latin1, "ISO-8859-1"},
    {65001, "UTF-8"},
};

std::vector<std::string> namesOf(int number) {
  std::vector<std::string> names;
  for (const SpecialName& special : specialNames) {
    if (special.number == number) {
      names.emplace_back(special.name);
    }
  }
  names.push_back("windows-" + std::to_string(number));
  names.push_back("ibm-" + std::to_string(number));
  names.push_back("windows-" + std::to_string(CodePage::windowsLatin));
  return names;
}

/// The library's own callback gives U+001A for single bytes in some code pages.
void replaceMalformed(const void* /*context*/,
                      UConverterToUnicodeArgs* arguments,
                      const char* /*bytes*/,
                      std::int32_t /*length*/,
                      UConverterCallbackReason reason,
                      UErrorCode* status) {
  if (reason <= UCNV_IRREGULAR) {
    constexpr char16_t replacement = 0xFFFD;
    *status = U_ZERO_ERROR;
    ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
  }
}

OwnedConverter open(int number) {
  for (const std::string& name : namesOf(number)) {
    UErrorCode status = U_ZERO_ERROR;
    OwnedConverter converter(ucnv_open(name.c_str(), &status));
    if (U_SUCCESS(status)) {
      ucnv_setToUCallBack(converter.get(), replaceMalformed, nullptr, nullptr, nullptr, &status);
      return converter;
    }
  }
  throw PlatformError("ICU has no converter tables.");
}

}  // namespace

struct CodePage::Converter {
  OwnedConverter icu;

  void append(BytesView bytes, std::string& text) const {
    constexpr std::size_t chunkSize = 1024;
    std::array<char16_t, chunkSize> units = {};
    // The library takes plain char pointers.
    const char* source = asText(bytes).data();
    const char* const end = source + bytes.size();
    Utf16Joiner joiner(text);
    ucnv_reset(icu.get());
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    while (status == U_BUFFER_OVERFLOW_ERROR) {
      status = U_ZERO_ERROR;
      char16_t* filled = units.data();
      ucnv_toUnicode(icu.get(),
                     &filled,
                     units.data() + chunkSize,
                     &source,
                     end,
                     nullptr,
                     /*flush=*/1,
                     &status);
      std::for_each(units.data(), filled, [&](char16_t unit) { joiner.append(unit); });
    }
    joiner.finish();
  }
};

CodePage::CodePage(int number) : converter_(new Converter{open(number)}) {
  hasSingleBytes_ = ucnv_getMaxCharSize(converter_->icu.get()) == 1;
  if (hasSingleBytes_) {
    fillCharacters();
  }
}

CodePage::~CodePage() = default;

void CodePage::fillCharacters() {
  for (std::size_t byte = 0; byte < characters_.size(); ++byte) {
    const std::uint8_t only[] = {static_cast<std::uint8_t>(byte)};
    converter_->append(only, characters_[byte]);
  }
}

void CodePage::append(BytesView bytes, std::string& text) const {
  if (!hasSingleBytes_) {
    converter_->append(bytes, text);
    return;
  }
  for (const std::uint8_t byte : bytes) {
    text += characters_[byte];
  }
}

}  // namespace tolvane
