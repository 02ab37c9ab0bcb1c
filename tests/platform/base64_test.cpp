#include "platform/text/base64.h"

#include <string>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct Base64Case {
  const char* text;
  std::optional<Bytes> bytes;
};
void PrintTo(const Base64Case& c, std::ostream* out) {
  *out << '"' << c.text << '"';
}

class Base64Test : public testing::TestWithParam<Base64Case> {};

TEST_P(Base64Test, ReadsOrRefuses) {
  EXPECT_EQ(Base64::decode(GetParam().text), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(Texts,
                         Base64Test,
                         testing::Values(Base64Case{"", Bytes()},
                                         Base64Case{"TWE=", Bytes({'M', 'a'})},
                                         Base64Case{" TW\n\tE ", Bytes({'M', 'a'})},
                                         Base64Case{"+/8=", Bytes({0xFB, 0xFF})},
                                         Base64Case{"T", std::nullopt},
                                         Base64Case{"TW=E", std::nullopt},
                                         Base64Case{"TW!=", std::nullopt}));

TEST(Base64RoundTripTest, KeepsEveryLength) {
  Bytes bytes;
  for (int length = 0; length < 9; ++length) {
    const std::string text = Base64::encode(bytes);
    EXPECT_EQ(text.size() % 4, 0U);
    EXPECT_EQ(Base64::decode(text), bytes);
    bytes.push_back(static_cast<std::uint8_t>(250 + length));
  }
}

}  // namespace
}  // namespace tolvane
