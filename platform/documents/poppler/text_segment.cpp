#include "platform/documents/poppler/text_segment.h"

#include <algorithm>
#include <optional>

namespace tolvane {

namespace {

// In parts of the smaller character's size.
constexpr double sharedPart = 0.3;  // of what lies on one line
constexpr double wordGap = 0.2;     // boxes are a little higher than the font's size
constexpr double cellGap = 1.3;     // also in justified text, spaces are rarely so wide

double overlap(double begin, double end, double otherBegin, double otherEnd) {
  return std::min(end, otherEnd) - std::max(begin, otherBegin);
}

double heightOf(const TextBox& box) {
  return box.y2 - box.y1;
}

double widthOf(const TextBox& box) {
  return box.x2 - box.x1;
}

double smallerHeight(const TextBox& one, const TextBox& other) {
  return std::min(heightOf(one), heightOf(other));
}

double gapAfter(const PageCharacter& last, const PageCharacter& next) {
  return last.course == Course::across ? Boxes::gapBeside(last.box, next.box)
                                       : Boxes::gapBetween(last.box, next.box);
}

double sizeOf(const PageCharacter& last, const PageCharacter& next) {
  return last.course == Course::across ? smallerHeight(last.box, next.box)
                                       : std::min(widthOf(last.box), widthOf(next.box));
}

/// @return nullopt when the characters are of one segment.
std::optional<Joint> jointOf(const PageCharacter& last, const PageCharacter& next) {
  if (next.opens != Opens::nothing) {
    return next.opens == Opens::block ? Joint::block : Joint::line;
  }
  return gapAfter(last, next) > cellGap * sizeOf(last, next) ? std::optional(Joint::gap)
                                                             : std::nullopt;
}

void include(TextBox& whole, const TextBox& part) {
  whole.x1 = std::min(whole.x1, part.x1);
  whole.y1 = std::min(whole.y1, part.y1);
  whole.x2 = std::max(whole.x2, part.x2);
  whole.y2 = std::max(whole.y2, part.y2);
}

}  // namespace

bool Boxes::shareRow(const TextBox& one, const TextBox& other) {
  return overlap(one.y1, one.y2, other.y1, other.y2) > sharedPart * smallerHeight(one, other);
}

double Boxes::gapBeside(const TextBox& one, const TextBox& other) {
  return std::max(one.x1, other.x1) - std::min(one.x2, other.x2);
}

double Boxes::gapBetween(const TextBox& upper, const TextBox& lower) {
  return std::max(upper.y1, lower.y1) - std::min(upper.y2, lower.y2);
}

bool Boxes::areWordsApart(const PageCharacter& one, const PageCharacter& other) {
  return gapAfter(one, other) > wordGap * sizeOf(one, other);
}

std::vector<TextSegment> segmentsOf(const PageCharacters& characters) {
  std::vector<TextSegment> segments;
  const PageCharacter* last = nullptr;  // that is not blank
  for (std::size_t index = 0; index < characters.size(); ++index) {
    const PageCharacter& character = characters[index];
    if (character.isBlank() && character.opens == Opens::nothing) {
      continue;
    }
    const std::optional<Joint> joint = last == nullptr ? Joint::block : jointOf(*last, character);
    if (joint) {
      segments.push_back({index, index + 1, *joint, character.box, character.course});
    } else {
      segments.back().end = index + 1;
      include(segments.back().box, character.box);
    }
    last = &character;
  }
  return segments;
}

}  // namespace tolvane
