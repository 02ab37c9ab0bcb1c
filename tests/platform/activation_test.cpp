#include "platform/process/activation.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(ActivationTest, ATokenStandsInForAStartupIdThatIsMissing) {
  EXPECT_EQ((Activation{"id", "token"}.startNotice()), "id");
  EXPECT_EQ((Activation{"id", ""}.startNotice()), "id");
  EXPECT_EQ((Activation{"", "token"}.startNotice()), "token");
  EXPECT_EQ(Activation().startNotice(), "");
}

}  // namespace
}  // namespace tolvane
