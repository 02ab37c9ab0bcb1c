#include "universal/documents/table_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvane::UniversalEngine {

namespace {

using ::testing::ElementsAre;
using Glyphs = std::vector<PdfGlyph>;

constexpr double height = 10;

PdfGlyph glyph(const char* text, double x, double y) {
  return {text, x, y, 5, height};
}

Glyphs joined(Glyphs all, const Glyphs& more) {
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

Table tableOf(const Glyphs& glyphs) {
  TableBuilder builder;
  builder.addPage(glyphs);
  return builder.table();
}

const struct {
  const char* label;
  double gap;     // between the two glyphs that are looked at
  double height;  // of the first of them
  TableRow expected;
} gapCases[] = {
    {"no gap", 0, 10, {"ab", "z"}},
    {"no space", 1.1, 10, {"ab", "z"}},
    {"a space", 1.5, 10, {"a b", "z"}},
    {"below the floor of 10 points", 9.9, 10, {"a b", "z"}},
    {"not more than the floor", 10, 10, {"a b", "z"}},
    {"above the floor", 10.1, 10, {"a", "b", "z"}},
    {"below 0.9 of a great height", 17.9, 20, {"a b", "z"}},
    {"above 0.9 of a great height", 18.1, 20, {"a", "b", "z"}},
    {"over each other", -3, 10, {"ab", "z"}},
};

// The row is there twice, and has a last cell far away, so that it is a table in any case.
TEST(GapTest, SplitsCellsAndWords) {
  for (const auto& c : gapCases) {
    SCOPED_TRACE(c.label);
    Glyphs glyphs;
    for (const double y : {100.0, 200.0}) {
      PdfGlyph first = glyph("a", 0, y);
      first.height = c.height;
      PdfGlyph second = glyph("b", 5 + c.gap, y);
      second.height = c.height;
      PdfGlyph last = second;
      last.text = "z";
      last.x = 400;
      glyphs = joined(glyphs, {first, second, last});
    }
    EXPECT_EQ(tableOf(glyphs), Table(2, c.expected));
  }
}

const struct {
  const char* label;
  double height;
  double drop;  // from the first glyph's middle to the second one's
  bool isOneLine;
} lineCases[] = {
    {"below 0.35 of the height", 10, 3.4, true},
    {"at 0.35 of the height", 10, 3.5, false},
    {"upwards", 10, -3.4, true},
    {"below the floor of 2 points", 4, 1.9, true},
    {"at the floor", 4, 2.0, false},
};

TEST(LineTest, GroupsByTheMiddle) {
  for (const auto& c : lineCases) {
    SCOPED_TRACE(c.label);
    Glyphs glyphs;
    for (const double y : {100.0, 300.0}) {
      glyphs.push_back({"a", 0, y, 5, c.height});
      glyphs.push_back({"b", 100, y + c.drop, 5, c.height});
    }
    EXPECT_EQ(tableOf(glyphs).size(), c.isOneLine ? 2U : 0U);
  }
}

TEST(TableBuilderTest, MeasuresALineByItsFirstGlyphAndThisGlyphsHeight) {
  // Each is 3 lower than the one before it: the third is too far from the first one.
  const Glyphs steps = {glyph("a", 0, 100), glyph("b", 50, 103), glyph("c", 100, 106)};
  const Glyphs again = {glyph("d", 0, 200), glyph("e", 50, 203), glyph("f", 100, 206)};
  EXPECT_THAT(tableOf(joined(steps, again)),
              ElementsAre(ElementsAre("a", "b"), ElementsAre("d", "e")));
}

TEST(TableBuilderTest, TakesTheMostRecentOfTwoMatchingLines) {
  // Two lines 3.6 apart; x stands between them.
  const Glyphs row = {glyph("a", 0, 100), glyph("b", 0, 103.6), glyph("x", 50, 101.8)};
  const Glyphs other = {glyph("c", 0, 200), glyph("d", 50, 200)};
  EXPECT_THAT(tableOf(joined(row, other)),
              ElementsAre(ElementsAre("b", "x"), ElementsAre("c", "d")));
}

TEST(TableBuilderTest, SortsALineFromLeftToRightAndKeepsTheOrderOfEqualPlaces) {
  Glyphs glyphs;
  for (const double y : {0.0, 50.0}) {
    glyphs =
        joined(glyphs, {glyph("d", 100, y), glyph("a", 0, y), glyph("c", 5, y), glyph("b", 0, y)});
  }
  EXPECT_THAT(tableOf(glyphs).front(), ElementsAre("abc", "d"));
}

TEST(TableBuilderTest, PassesOverBlanksAndGlyphsWithoutAnArea) {
  PdfGlyph flat = glyph("f", 20, 0);
  flat.height = 0;
  PdfGlyph thin = glyph("t", 20, 0);
  thin.width = 0;
  const Glyphs row = {
      glyph("a", 0, 0), glyph(" ", 10, 0), glyph("\xC2\xA0", 14, 0), flat, thin, glyph("b", 30, 0)};
  EXPECT_THAT(tableOf(joined(row, {glyph("c", 0, 50), glyph("d", 30, 50)})),
              ElementsAre(ElementsAre("a", "b"), ElementsAre("c", "d")));
}

Glyphs row(std::vector<double> starts, double y, const char* text) {
  Glyphs glyphs;
  for (const double start : starts) {
    glyphs.push_back(glyph(text, start, y));
  }
  return glyphs;
}

TEST(TableBuilderTest, AlignsColumnsWithin12Points) {
  const Glyphs anchor = row({0, 100}, 0, "a");
  EXPECT_EQ(tableOf(joined(anchor, row({0, 112}, 50, "b"))).size(), 2U);
  EXPECT_EQ(tableOf(joined(anchor, row({0, 112.1}, 50, "b"))).size(), 0U);
  EXPECT_EQ(tableOf(joined(anchor, row({12.1, 100}, 50, "b"))).size(), 0U);
  EXPECT_EQ(tableOf(joined(anchor, row({0, 100, 200}, 50, "b"))).size(), 0U);
}

TEST(TableBuilderTest, CollectsRowsOfAllPagesAroundTheFirstAnchorWithACompanion) {
  TableBuilder builder;
  builder.addPage(joined(row({0, 300}, 0, "lonely"), row({10, 110}, 50, "first")));
  builder.addPage(joined(row({500}, 0, "text"), row({21, 120}, 50, "second")));
  // Aligned with the second row, but not with the anchor.
  builder.addPage(joined(row({32, 130}, 0, "far"), row({0, 100}, 50, "third")));
  EXPECT_THAT(builder.table(),
              ElementsAre(ElementsAre("first", "first"),
                          ElementsAre("second", "second"),
                          ElementsAre("third", "third")));
}

// The last column ends at one edge: its numbers begin further to the left the longer they are.
TEST(TableBuilderTest, KeepsRowsBetweenWhoseCellsStandInTheSameColumns) {
  PdfGlyph wide = glyph("1 234.00", 80, 50);
  wide.width = 35;
  Glyphs glyphs = joined(row({0, 110}, 0, "first"), {glyph("middle", 0, 50), wide});
  glyphs = joined(glyphs, row({0, 108}, 100, "last"));
  EXPECT_THAT(tableOf(glyphs),
              ElementsAre(ElementsAre("first", "first"),
                          ElementsAre("middle", "1 234.00"),
                          ElementsAre("last", "last")));
}

TEST(TableBuilderTest, FindsNoTableInOneRow) {
  EXPECT_TRUE(tableOf(row({0, 100, 200}, 0, "a")).empty());
  EXPECT_TRUE(tableOf({}).empty());
}

}  // namespace

}  // namespace tolvane::UniversalEngine
