#include "platform/text/visual_text.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

const struct {
  const char* label;
  const char* visual;
  const char* logical;
} orders[] = {
    {"Latin", "Pears (fresh) 12.50", "Pears (fresh) 12.50"},
    {"accents", "Schöne Grüße", "Schöne Grüße"},
    {"Hebrew", "םיירט םיסגא", "אגסים טריים"},
    {"Hebrew with a number", "12.50 ריחמ", "מחיר 12.50"},
    {"Arabic", "ةجزاط", "طازجة"},
    {"Latin around Hebrew", "Price ריחמ here", "Price מחיר here"},
    {"nothing", "", ""},
};

TEST(VisualTextTest, GivesTheReadingOrder) {
  for (const auto& [label, visual, logical] : orders) {
    SCOPED_TRACE(label);
    EXPECT_EQ(VisualText::logicalOrder(visual), logical);
  }
}

}  // namespace
}  // namespace tolvane
