#include "engine/job_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::Pair;

TEST(JobOptionsTest, ReadsANumberHoweverItWasSent) {
  const JobOptions options = JobOptions::read({{"quality", 1},
                                               {"maxDimension", 800.0},
                                               {"pages", Value::List{2, 0.0, true}},
                                               {"rotations", Value::Map{{"2", -90.0}}}});
  EXPECT_EQ(options.quality, 1.0);
  EXPECT_EQ(options.maxDimension, 800);
  EXPECT_THAT(options.pages, Optional(ElementsAre(2, 0, 1)));
  EXPECT_THAT(options.rotations, ElementsAre(Pair("2", -90)));
}

TEST(JobOptionsTest, TakesDefaultsForMissingKeysAndValuesOfTheWrongType) {
  const Value::Map wrong = {{"quality", "0.5"},
                            {"maxDimension", 800.5},
                            {"range", 3},
                            {"pages", Value::List{0, "1"}},
                            {"rotations", Value::Map{{"0", 90}, {"1", "left"}}}};
  for (const Value::Map& map : {Value::Map(), wrong}) {
    const JobOptions options = JobOptions::read(map);
    EXPECT_EQ(options.quality, 0.9);
    EXPECT_EQ(options.maxDimension, 1600);
    EXPECT_EQ(options.range, "");
    EXPECT_EQ(options.pages, std::nullopt);
    EXPECT_THAT(options.rotations, IsEmpty());
  }
}

}  // namespace
}  // namespace tolvane
