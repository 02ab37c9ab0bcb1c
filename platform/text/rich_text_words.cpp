#include <algorithm>
#include <iterator>

#include "platform/text/rich_text_reader.h"

namespace tolvane {

/// The control words that matter to the text, by name. All others format it.
constexpr RichTextReader::Word RichTextReader::words[] = {
    {"NeXTGraphic", &RichTextReader::skipDestination},
    {"aftncn", &RichTextReader::skipDestination},
    {"aftnsep", &RichTextReader::skipDestination},
    {"aftnsepc", &RichTextReader::skipDestination},
    {"ansi", &RichTextReader::documentCodePage, CodePage::windowsLatin},
    {"ansicpg", &RichTextReader::ansiCodePage},
    {"bin", &RichTextReader::binary},
    {"bullet", &RichTextReader::character, 0x2022},
    {"bxe", &RichTextReader::skipDestination},
    {"cell", &RichTextReader::character, '\t'},
    {"colortbl", &RichTextReader::skipDestination},
    {"column", &RichTextReader::lineEnd},
    {"cpg", &RichTextReader::fontCodePage},
    {"deff", &RichTextReader::defaultFont},
    {"do", &RichTextReader::keepDestination},
    {"emdash", &RichTextReader::character, 0x2014},
    {"emspace", &RichTextReader::character, 0x2003},
    {"endash", &RichTextReader::character, 0x2013},
    {"enspace", &RichTextReader::character, 0x2002},
    {"f", &RichTextReader::font},
    {"fcharset", &RichTextReader::fontCharset},
    {"filetbl", &RichTextReader::skipDestination},
    {"fldinst", &RichTextReader::skipDestination},
    {"fontemb", &RichTextReader::skipDestination},
    {"fonttbl", &RichTextReader::fontTable},
    {"footer", &RichTextReader::skipDestination},
    {"footerf", &RichTextReader::skipDestination},
    {"footerl", &RichTextReader::skipDestination},
    {"footerr", &RichTextReader::skipDestination},
    {"ftncn", &RichTextReader::skipDestination},
    {"ftnsep", &RichTextReader::skipDestination},
    {"ftnsepc", &RichTextReader::skipDestination},
    {"header", &RichTextReader::skipDestination},
    {"headerf", &RichTextReader::skipDestination},
    {"headerl", &RichTextReader::skipDestination},
    {"headerr", &RichTextReader::skipDestination},
    {"info", &RichTextReader::skipDestination},
    {"ldblquote", &RichTextReader::character, 0x201C},
    {"line", &RichTextReader::lineEnd},
    {"lquote", &RichTextReader::character, 0x2018},
    {"ltrmark", &RichTextReader::character, 0x200E},
    {"mac", &RichTextReader::documentCodePage, CodePage::macRoman},
    {"mmathPict", &RichTextReader::skipDestination},
    {"nestcell", &RichTextReader::character, '\t'},
    {"nestrow", &RichTextReader::lineEnd},
    {"nesttableprops", &RichTextReader::keepDestination},
    {"nonesttables", &RichTextReader::skipDestination},
    {"nonshppict", &RichTextReader::skipDestination},
    {"object", &RichTextReader::skipDestination},
    {"page", &RichTextReader::lineEnd},
    {"par", &RichTextReader::lineEnd},
    {"pc", &RichTextReader::documentCodePage, 437},
    {"pca", &RichTextReader::documentCodePage, 850},
    {"pict", &RichTextReader::skipDestination},
    {"plain", &RichTextReader::plain},
    {"pntxta", &RichTextReader::skipDestination},
    {"pntxtb", &RichTextReader::skipDestination},
    {"qmspace", &RichTextReader::character, 0x2005},
    {"rdblquote", &RichTextReader::character, 0x201D},
    {"row", &RichTextReader::lineEnd},
    {"rquote", &RichTextReader::character, 0x2019},
    {"rtlmark", &RichTextReader::character, 0x200F},
    {"rxe", &RichTextReader::skipDestination},
    {"sect", &RichTextReader::lineEnd},
    {"shpinst", &RichTextReader::keepDestination},
    {"shprslt", &RichTextReader::skipDestination},
    {"sn", &RichTextReader::skipDestination},
    {"sp", &RichTextReader::skipDestination},
    {"stylesheet", &RichTextReader::skipDestination},
    {"sv", &RichTextReader::skipDestination},
    {"tab", &RichTextReader::character, '\t'},
    {"tc", &RichTextReader::skipDestination},
    {"tcn", &RichTextReader::skipDestination},
    {"txe", &RichTextReader::skipDestination},
    {"u", &RichTextReader::unicode},
    {"uc", &RichTextReader::fallbackLength},
    {"ud", &RichTextReader::unicodeAlternative},
    {"upr", &RichTextReader::alternatives},
    {"v", &RichTextReader::hidden},
    {"xe", &RichTextReader::skipDestination},
    {"zwbo", &RichTextReader::character, 0x200B},
    {"zwj", &RichTextReader::character, 0x200D},
    {"zwnbo", &RichTextReader::character, 0x2060},
    {"zwnj", &RichTextReader::character, 0x200C},
};

const RichTextReader::Word* RichTextReader::wordNamed(std::string_view name) {
  static_assert(
      std::is_sorted(std::begin(words), std::end(words), [](const Word& first, const Word& second) {
        return first.name < second.name;
      }));
  const Word* const found = std::lower_bound(
      std::begin(words), std::end(words), name, [](const Word& word, std::string_view other) {
        return word.name < other;
      });
  return found != std::end(words) && found->name == name ? found : nullptr;
}

}  // namespace tolvane
