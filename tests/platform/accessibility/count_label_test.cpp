#include "platform/desktop/accessibility/count_label.h"

#include <ostream>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

using Names = std::vector<std::string>;

struct LabelCase {
  const char* label;
  Names names;
  bool confirms;
};
void PrintTo(const LabelCase& c, std::ostream* out) {
  *out << c.label << " for " << c.names.size();
}

const Names one = {"a.txt"};
const Names two = {"a.txt", "b.txt"};
const Names three = {"a.txt", "b.txt", "c.txt"};

class CountLabelTest : public testing::TestWithParam<LabelCase> {};
TEST_P(CountLabelTest, ConfirmsTheCount) {
  EXPECT_EQ(CountLabel::confirms(GetParam().label, GetParam().names), GetParam().confirms);
}
INSTANTIATE_TEST_SUITE_P(
    Labels,
    CountLabelTest,
    testing::Values(LabelCase{"2 items selected", two, true},
                    LabelCase{"3 items selected", two, false},
                    LabelCase{"12 items selected", two, false},
                    LabelCase{
                        "1 folder selected (containing 7 items), 2 other items selected (2 kB), "
                        "Free space: 76.4 GB",
                        three,
                        true},
                    LabelCase{"2 folders selected (containing a total of 3 items)", three, false},
                    LabelCase{"Selection: 1 folder  |  1 file: 2 bytes", two, true},
                    LabelCase{"“a.txt” selected (2 bytes)", one, true},
                    LabelCase{"„a.txt“ ausgewählt (2 Bytes)", one, true},
                    LabelCase{"“b.txt” selected (1 byte)", one, false},
                    LabelCase{"a.txt", one, false},  // a label of its own, not of a selection
                    LabelCase{"“a.txt” selected (2 bytes)", two, false},
                    LabelCase{"1 Folder sel…lected (4 B)", three, true},
                    LabelCase{"4 Files sel…d (4 B)", three, false},
                    LabelCase{"a.t…ext document, 2 B)", one, true},
                    LabelCase{"b.t…ext document, 2 B)", one, false},
                    LabelCase{"Loading…", two, false},
                    LabelCase{"", one, false},
                    LabelCase{"99999999999999999999999999 items", two, false}));

TEST(QuotedNameTest, StandsBetweenTheFirstAndTheLastMark) {
  EXPECT_EQ(CountLabel::quotedName("\"a.txt\" (2 bytes) plain text"), "a.txt");
  EXPECT_EQ(CountLabel::quotedName("\"a\"b.txt\" folder"), "a\"b.txt");
  EXPECT_EQ(CountLabel::quotedName("„a.txt“ (2 Bytes)"), "a.txt");
  EXPECT_EQ(CountLabel::quotedName("«\u00A0a.txt\u00A0» (2 octets)"), "a.txt");
  EXPECT_EQ(CountLabel::quotedName("14 items"), "");
  EXPECT_EQ(CountLabel::quotedName("5\" disk"), "");
}

}  // namespace
}  // namespace tolvane
