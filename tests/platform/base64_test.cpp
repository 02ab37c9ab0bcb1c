#include "platform/text/base64.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

const std::tuple<const char*, std::optional<Bytes>> base64Cases[] = {
    {"", Bytes()},
    {"TWE=", Bytes({'M', 'a'})},
    {" TW\n\tE ", Bytes({'M', 'a'})},
    {"+/8=", Bytes({0xFB, 0xFF})},
    {"T", std::nullopt},
    {"TW=E", std::nullopt},
    {"TW!=", std::nullopt},
};

TEST(Base64Test, ReadsOrRefuses) {
  for (const auto& [text, bytes] : base64Cases) {
    EXPECT_EQ(Base64::decode(text), bytes) << '"' << text << '"';
  }
}

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
