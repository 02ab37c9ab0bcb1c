#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include <pango/pangocairo.h>

namespace tolvane {

struct FreeItem {
  void operator()(PangoItem* item) const { pango_item_free(item); }
};
struct FreeGlyphs {
  void operator()(PangoGlyphString* glyphs) const { pango_glyph_string_free(glyphs); }
};
using ItemPointer = std::unique_ptr<PangoItem, FreeItem>;
using GlyphsPointer = std::unique_ptr<PangoGlyphString, FreeGlyphs>;

/// A word, or a space, as Pango shapes it in a line of Latin text.
struct Word {
  GlyphsPointer glyphs;
  int width = 0;       ///< Pango units
  int characters = 0;  ///< of its text
  bool hasLetter = false;
};

/// The words that occurred so far, each shaped once. Only those whose glyphs are the same whatever
/// stands on the other side of the spaces around them.
class WordGlyphs {
 public:
  /// @param context holds the font; not owned.
  /// @param sample what Pango makes of a Latin letter; not owned.
  WordGlyphs(PangoContext* context, const PangoItem& sample);

  /// @param word without spaces, or one space; not empty.
  /// @return null when Pango has to see the whole line. Stays valid.
  [[nodiscard]] const Word* find(std::string_view word);

 private:
  [[nodiscard]] std::unique_ptr<Word> shapedAlone(std::string_view word) const;
  [[nodiscard]] bool staysItself(std::string_view text, const Word& word) const;
  [[nodiscard]] bool isOneItem(const std::string& text) const;
  [[nodiscard]] GlyphsPointer shape(std::string_view text) const;

  PangoContext* context_;
  const PangoItem& sample_;
  std::unique_ptr<Word> space_;  // null where the font sets a space by its neighbours
  std::unordered_map<std::string, std::unique_ptr<Word>> words_;
  std::string key_;
  int credit_;  // new words that may still be tried
};

}  // namespace tolvane
