#include "platform/fonts/font_finder.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(FontFinderTest, TakesWhatTheMachineHasForAFamily) {
  const auto sans = fontFinder().find("Helvetica", "Note 50% é");
  ASSERT_TRUE(sans.has_value());
  EXPECT_EQ(sans->filename(), "NimbusSans-Regular.otf");
  EXPECT_TRUE(std::filesystem::exists(*sans));
  EXPECT_EQ(fontFinder().find("Helvetica", ""), sans);
  EXPECT_EQ(fontFinder().find("Helvetica", "line\nend\t\xFF"), sans);
  EXPECT_EQ(fontFinder().find("DejaVu Sans Mono", "a")->filename(), "DejaVuSansMono.ttf");
}

TEST(FontFinderTest, TakesAnotherFontForWhatTheFamilyCannotWrite) {
  // Letters of Armenian: in DejaVu Sans, not in Nimbus Sans.
  const auto armenian = fontFinder().find("Helvetica", "Բարև");
  ASSERT_TRUE(armenian.has_value());
  EXPECT_EQ(armenian->filename().string().find("NimbusSans"), std::string::npos);
  // Nobody can write this one, so the family stays.
  EXPECT_EQ(fontFinder().find("Helvetica", "\xF4\x8F\xBF\xBD"), fontFinder().find("Helvetica", ""));
}

}  // namespace
}  // namespace tolvane
