#include "platform/text/rich_text_fonts.h"

#include <algorithm>
#include <iterator>

namespace tolvane {

namespace {

struct Charset {
  int number;
  int codePage;
};

/// Character set numbers of fonts. Left out: 0 (ANSI), 1 (default) and 2 (symbol), which say
/// nothing beyond the document's own code page.
constexpr Charset charsets[] = {
    {77, 10000}, {78, 932},   {79, 949},   {80, 936},   {81, 950},   {85, 10006}, {86, 10081},
    {88, 10029}, {89, 10007}, {128, 932},  {129, 949},  {130, 1361}, {134, 936},  {136, 950},
    {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256}, {186, 1257}, {204, 1251},
    {222, 874},  {238, 1250}, {254, 437},  {255, 850},
};

}  // namespace

void RichTextFonts::setCharset(int charset) {
  const auto* const found =
      std::find_if(std::begin(charsets), std::end(charsets), [&](const Charset& candidate) {
        return candidate.number == charset;
      });
  if (found != std::end(charsets)) {
    codePages_[definedFont_] = found->codePage;
  }
}

void RichTextFonts::setCodePage(int codePage) {
  codePages_[definedFont_] = codePage;
}

int RichTextFonts::codePageOf(int font) const {
  const auto found = codePages_.find(font == noFont ? defaultFont_ : font);
  return found == codePages_.end() ? documentCodePage_ : found->second;
}

}  // namespace tolvane
