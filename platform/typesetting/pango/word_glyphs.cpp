#include "platform/typesetting/pango/word_glyphs.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <hb-aat.h>
#include <hb-ot.h>

namespace tolvane {

namespace {

struct Release {
  void operator()(hb_shape_plan_t* plan) const { hb_shape_plan_destroy(plan); }
  void operator()(hb_set_t* set) const { hb_set_destroy(set); }
  void operator()(GList* items) const {
    g_list_free_full(items, [](gpointer item) { pango_item_free(static_cast<PangoItem*>(item)); });
  }
  void operator()(PangoAttrList* attributes) const { pango_attr_list_unref(attributes); }
};
template <typename T>
using Owned = std::unique_ptr<T, Release>;

constexpr std::size_t longestWord = 64;  // bytes
// A text in which hardly a word comes back gains nothing: a new word costs about as much as eight
// known ones save.
constexpr int firstCredit = 20'000;
constexpr int creditOfKnown = 1;
constexpr int costOfNew = 8;

bool isAsciiLetter(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

/// The bytes at the start that make up one character of plain Latin text: ASCII, Latin-1 and Latin
/// Extended-A letters, dashes and quotation marks; 0 for any other. None of them joins, combines,
/// or changes the direction or what stands on the other side of a space.
std::size_t plainLength(std::string_view text) {
  const auto at = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  if (at(0) > ' ' && at(0) < 0x7F) {
    return 1;
  }
  if (text.size() >= 2 && at(0) >= 0xC3 && at(0) <= 0xC5) {
    return 2;
  }
  const bool isDashOrQuote = text.size() >= 3 && at(0) == 0xE2 && at(1) == 0x80 &&
                             ((at(2) >= 0x93 && at(2) <= 0x9E) || at(2) == 0xA6);
  return isDashOrQuote ? 3 : 0;
}

/// @return the characters of a plain word; 0 when it has any other.
int plainCharacters(std::string_view word) {
  int count = 0;
  while (!word.empty()) {
    const std::size_t length = plainLength(word);
    if (length == 0) {
      return 0;
    }
    word.remove_prefix(length);
    ++count;
  }
  return count;
}

/// What Pango has the font do to Latin text.
Owned<hb_shape_plan_t> latinPlan(PangoFont* font, PangoLanguage* language) {
  hb_font_t* shaped = pango_font_get_hb_font(font);
  const hb_segment_properties_t properties = {
      HB_DIRECTION_LTR,
      HB_SCRIPT_LATIN,
      hb_language_from_string((pango_language_to_string)(language), -1),
      nullptr,
      nullptr};
  std::array<hb_feature_t, 32> features = {};
  guint featureCount = 0;
  pango_font_get_features(font, features.data(), features.size(), &featureCount);
  unsigned axisCount = 0;
  const int* axes = hb_font_get_var_coords_normalized(shaped, &axisCount);
  return Owned<hb_shape_plan_t>(hb_shape_plan_create2(hb_font_get_face(shaped),
                                                      &properties,
                                                      features.data(),
                                                      featureCount,
                                                      axes,
                                                      axisCount,
                                                      nullptr));
}

bool lookupsHave(hb_face_t* face, hb_shape_plan_t* plan, hb_tag_t table, hb_codepoint_t glyph) {
  const Owned<hb_set_t> lookups(hb_set_create());
  const Owned<hb_set_t> glyphs(hb_set_create());
  hb_ot_shape_plan_collect_lookups(plan, table, lookups.get());
  for (hb_codepoint_t lookup = HB_SET_VALUE_INVALID; hb_set_next(lookups.get(), &lookup) != 0;) {
    hb_ot_layout_lookup_collect_glyphs(
        face, table, lookup, glyphs.get(), glyphs.get(), glyphs.get(), glyphs.get());
  }
  return hb_set_has(glyphs.get(), glyph) != 0;
}

/// Whether no rule of the font for Latin text looks at a space, so that none looks across one. What
/// tables of pairs say shows when a word is shaped.
bool dividesAtSpaces(const PangoAnalysis& analysis) {
  hb_font_t* font = pango_font_get_hb_font(analysis.font);
  hb_face_t* face = hb_font_get_face(font);
  const Owned<hb_shape_plan_t> plan = latinPlan(analysis.font, analysis.language);
  hb_codepoint_t space = 0;
  return std::strcmp(hb_shape_plan_get_shaper(plan.get()), "ot") == 0 &&
         hb_aat_layout_has_substitution(face) == 0 && hb_aat_layout_has_positioning(face) == 0 &&
         hb_font_get_nominal_glyph(font, ' ', &space) != 0 &&
         !lookupsHave(face, plan.get(), HB_OT_TAG_GSUB, space) &&
         !lookupsHave(face, plan.get(), HB_OT_TAG_GPOS, space);
}

bool isSame(const PangoGlyphInfo& one, const PangoGlyphInfo& other) {
  return one.glyph == other.glyph && one.geometry.width == other.geometry.width &&
         one.geometry.x_offset == other.geometry.x_offset &&
         one.geometry.y_offset == other.geometry.y_offset;
}

bool isMissing(const PangoGlyphInfo& info) {
  return (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0;
}

}  // namespace

WordGlyphs::WordGlyphs(PangoContext* context, const PangoItem& sample)
    : context_(context), sample_(sample), credit_(firstCredit) {
  if (dividesAtSpaces(sample_.analysis)) {
    space_ = std::make_unique<Word>(Word{.glyphs = shape(" "), .characters = 1});
    space_->width = pango_glyph_string_get_width(space_->glyphs.get());
  }
}

const Word* WordGlyphs::find(std::string_view word) {
  if (word == " " || space_ == nullptr) {
    return space_.get();
  }
  key_.assign(word);
  const auto known = words_.find(key_);
  if (known != words_.end()) {
    credit_ = std::min(credit_ + creditOfKnown, firstCredit);
    return known->second.get();
  }
  if (credit_ < costOfNew) {
    return nullptr;
  }
  credit_ -= costOfNew;
  return words_.emplace(key_, shapedAlone(word)).first->second.get();
}

/// @return null when Pango has to see what stands around the word.
std::unique_ptr<Word> WordGlyphs::shapedAlone(std::string_view word) const {
  const int characters = word.size() <= longestWord ? plainCharacters(word) : 0;
  if (characters == 0 || !isOneItem("a " + std::string(word))) {
    return nullptr;
  }
  auto shaped = std::make_unique<Word>(Word{.glyphs = shape(word), .characters = characters});
  shaped->width = pango_glyph_string_get_width(shaped->glyphs.get());
  shaped->hasLetter = std::any_of(word.begin(), word.end(), isAsciiLetter);
  return staysItself(word, *shaped) ? std::move(shaped) : nullptr;
}

bool WordGlyphs::staysItself(std::string_view text, const Word& word) const {
  const GlyphsPointer between = shape(" " + std::string(text) + " ");
  const PangoGlyphInfo* alone = word.glyphs->glyphs;
  const int count = word.glyphs->num_glyphs;
  const PangoGlyphInfo& space = space_->glyphs->glyphs[0];
  return std::none_of(alone, alone + count, isMissing) && between->num_glyphs == count + 2 &&
         isSame(between->glyphs[0], space) && isSame(between->glyphs[count + 1], space) &&
         std::equal(alone, alone + count, between->glyphs + 1, isSame);
}

bool WordGlyphs::isOneItem(const std::string& text) const {
  const Owned<PangoAttrList> none(pango_attr_list_new());
  const Owned<GList> items(pango_itemize_with_base_dir(context_,
                                                       PANGO_DIRECTION_LTR,
                                                       text.c_str(),
                                                       0,
                                                       static_cast<int>(text.size()),
                                                       none.get(),
                                                       nullptr));
  const PangoAnalysis& found = static_cast<const PangoItem*>(items->data)->analysis;
  const PangoAnalysis& expected = sample_.analysis;
  return items->next == nullptr && found.font == expected.font && found.level == expected.level &&
         found.script == expected.script && found.language == expected.language &&
         found.gravity == expected.gravity && found.flags == expected.flags;
}

GlyphsPointer WordGlyphs::shape(std::string_view text) const {
  GlyphsPointer glyphs(pango_glyph_string_new());
  const int length = static_cast<int>(text.size());
  pango_shape_with_flags(
      text.data(), length, text.data(), length, &sample_.analysis, glyphs.get(), PANGO_SHAPE_NONE);
  return glyphs;
}

}  // namespace tolvane
