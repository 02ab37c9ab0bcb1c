#include <algorithm>
#include <climits>
#include <cstddef>
#include <filesystem>
#include <fontconfig/fontconfig.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/fonts/font_finder.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

struct Release {
  void operator()(FcConfig* config) const { FcConfigDestroy(config); }
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
  void operator()(FcCharSet* characters) const { FcCharSetDestroy(characters); }
  void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};
using Config = std::unique_ptr<FcConfig, Release>;
using Pattern = std::unique_ptr<FcPattern, Release>;
using Characters = std::unique_ptr<FcCharSet, Release>;
using Fonts = std::unique_ptr<FcFontSet, Release>;

/// What a font must be able to draw: control characters and bytes that are not UTF-8 have no glyph.
Characters charactersOf(std::string_view text) {
  constexpr FcChar32 space = 0x20;
  Characters characters(FcCharSetCreate());
  while (!text.empty()) {
    FcChar32 character = 0;
    const int length = FcUtf8ToUcs4(reinterpret_cast<const FcChar8*>(text.data()),
                                    &character,
                                    static_cast<int>(std::min<std::size_t>(text.size(), INT_MAX)));
    if (length > 0 && character >= space) {
      FcCharSetAddChar(characters.get(), character);
    }
    text.remove_prefix(length > 0 ? static_cast<std::size_t>(length) : 1);
  }
  return characters;
}

Pattern patternFor(FcConfig* config, const std::string& family, std::string_view text) {
  Pattern pattern(FcPatternCreate());
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddCharSet(pattern.get(), FC_CHARSET, charactersOf(text).get());
  FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
  FcPatternAddBool(pattern.get(), FC_COLOR, FcFalse);
  FcConfigSubstitute(config, pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  return pattern;
}

/// @return nullopt for pictures of letters and for the later faces of a collection, which a file's
/// name does not reach.
std::optional<fs::path> outlineFile(const FcPattern* font) {
  FcBool isScalable = FcFalse;
  FcBool isColored = FcTrue;
  int face = -1;
  FcChar8* file = nullptr;
  FcPatternGetBool(font, FC_SCALABLE, 0, &isScalable);
  FcPatternGetBool(font, FC_COLOR, 0, &isColored);
  FcPatternGetInteger(font, FC_INDEX, 0, &face);
  const bool found = FcPatternGetString(font, FC_FILE, 0, &file) == FcResultMatch;
  if (!found || isScalable == FcFalse || isColored == FcTrue || face != 0) {
    return std::nullopt;
  }
  return fs::path(reinterpret_cast<const char*>(file));
}

class FontconfigFinder final : public FontFinder {
 public:
  std::optional<fs::path> find(const std::string& family, std::string_view text) override {
    const Config config(FcInitLoadConfigAndFonts());
    if (!config) {
      return std::nullopt;
    }
    const Pattern pattern = patternFor(config.get(), family, text);
    FcResult ignored = FcResultNoMatch;
    const Fonts fonts(FcFontSort(config.get(), pattern.get(), FcFalse, nullptr, &ignored));
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
      if (std::optional<fs::path> file = outlineFile(fonts->fonts[i])) {
        return file;
      }
    }
    return std::nullopt;
  }
};

}  // namespace

}  // namespace tolvane

extern "C" __attribute__((visibility("default"))) void* tolvaneFontFinder() {
  static tolvane::FontconfigFinder finder;
  return static_cast<tolvane::FontFinder*>(&finder);
}
