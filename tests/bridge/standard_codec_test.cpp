#include "bridge/standard_codec.h"

#include <sys/resource.h>

#include <gtest/gtest.h>

#include "bridge/method_codec.h"

namespace tolvane {
namespace {

struct ValueCase {
  const char* label;
  Value value;
  Bytes message;
};
void PrintTo(const ValueCase& c, std::ostream* out) {
  *out << c.label;
}

class WrittenValueTest : public testing::TestWithParam<ValueCase> {};

TEST_P(WrittenValueTest, IsReadBack) {
  EXPECT_EQ(StandardCodec::encode(GetParam().value), GetParam().message);
  EXPECT_EQ(StandardCodec::decode(GetParam().message), GetParam().value);
}

TEST_P(WrittenValueTest, IsRefusedWhenCutShortOrFollowed) {
  Bytes message = GetParam().message;
  for (std::size_t length = 0; length < message.size(); ++length) {
    EXPECT_THROW(static_cast<void>(StandardCodec::decode(BytesView(message).first(length))),
                 MalformedMessage)
        << length;
  }
  message.push_back(0);
  EXPECT_THROW(static_cast<void>(StandardCodec::decode(message)), MalformedMessage);
}

const Bytes five = {0, 0, 0, 0, 0, 0, 0x14, 0x40};  // 5.0

Bytes joined(Bytes first, const Bytes& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

INSTANTIATE_TEST_SUITE_P(
    StandardCodec,
    WrittenValueTest,
    testing::Values(ValueCase{"null", nullptr, {0}},
                    ValueCase{"true", true, {1}},
                    ValueCase{"false", false, {2}},
                    ValueCase{"largest int32", INT32_MAX, {3, 0xFF, 0xFF, 0xFF, 0x7F}},
                    ValueCase{"smallest int32", INT32_MIN, {3, 0, 0, 0, 0x80}},
                    ValueCase{"past int32", INT64_C(0x80000000), {4, 0, 0, 0, 0x80, 0, 0, 0, 0}},
                    ValueCase{"below int32",
                              INT64_C(-0x80000001),
                              {4, 0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF}},
                    ValueCase{"smallest int64", INT64_MIN, {4, 0, 0, 0, 0, 0, 0, 0, 0x80}},
                    ValueCase{"double, aligned", 5.0, joined({6, 0, 0, 0, 0, 0, 0, 0}, five)},
                    ValueCase{"double that needs no padding",
                              Value::List{"abc", 5.0},
                              joined({12, 2, 7, 3, 'a', 'b', 'c', 6}, five)},
                    ValueCase{"text", "é·", {7, 4, 0xC3, 0xA9, 0xC2, 0xB7}},
                    ValueCase{"path that is not UTF-8", "/\xFF", {7, 2, '/', 0xFF}},
                    ValueCase{"bytes", Bytes{0, 255}, {8, 2, 0, 255}},
                    ValueCase{"list", Value::List{nullptr, Value::List{}}, {12, 2, 0, 12, 0}},
                    ValueCase{"map",
                              Value::Map{{"a", true}, {"b", Value::Map{}}},
                              {13, 2, 7, 1, 'a', 1, 7, 1, 'b', 13, 0}}));

struct SizeCase {
  std::size_t size;
  Bytes start;
};
void PrintTo(const SizeCase& c, std::ostream* out) {
  *out << c.size;
}

class SizeTest : public testing::TestWithParam<SizeCase> {};

TEST_P(SizeTest, TakesOneThreeOrFiveBytes) {
  const Bytes message = StandardCodec::encode(std::string(GetParam().size, 'x'));
  const Bytes& start = GetParam().start;
  ASSERT_EQ(message.size(), start.size() + GetParam().size);
  EXPECT_EQ(Bytes(message.begin(), message.begin() + static_cast<std::ptrdiff_t>(start.size())),
            start);
  EXPECT_EQ(StandardCodec::decode(message), Value(std::string(GetParam().size, 'x')));
}

INSTANTIATE_TEST_SUITE_P(StandardCodec,
                         SizeTest,
                         testing::Values(SizeCase{253, {7, 253}},
                                         SizeCase{254, {7, 254, 254, 0}},
                                         SizeCase{65535, {7, 254, 0xFF, 0xFF}},
                                         SizeCase{65536, {7, 255, 0, 0, 1, 0}}));

class ReadValueTest : public testing::TestWithParam<ValueCase> {};

TEST_P(ReadValueTest, IsUnderstood) {
  EXPECT_EQ(StandardCodec::decode(GetParam().message), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    StandardCodec,
    ReadValueTest,
    testing::Values(
        ValueCase{"int32 list", Value::List{1, -1}, {9, 2, 0, 0, 1, 0, 0, 0, 255, 255, 255, 255}},
        ValueCase{"int64 list", Value::List{7}, {10, 1, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0}},
        ValueCase{"float64 list", Value::List{5.0}, joined({11, 1, 0, 0, 0, 0, 0, 0}, five)},
        ValueCase{"float32 list", Value::List{5.0}, {14, 1, 0, 0, 0, 0, 0xA0, 0x40}},
        ValueCase{"map with a key that is a number",
                  Value::List{nullptr, 1},
                  {12, 2, 13, 2, 7, 1, 'a', 1, 3, 1, 0, 0, 0, 1, 3, 1, 0, 0, 0}}));

struct MalformedCase {
  const char* label;
  Bytes message;
};
void PrintTo(const MalformedCase& c, std::ostream* out) {
  *out << c.label;
}

class MalformedMessageTest : public testing::TestWithParam<MalformedCase> {};

TEST_P(MalformedMessageTest, IsRefused) {
  EXPECT_THROW(static_cast<void>(StandardCodec::decode(GetParam().message)), MalformedMessage);
}

INSTANTIATE_TEST_SUITE_P(
    StandardCodec,
    MalformedMessageTest,
    testing::Values(MalformedCase{"unknown type", {15}},
                    MalformedCase{"whole number of any length", {5, 2, 'f', 'f'}},
                    MalformedCase{"text of 4 GiB", {7, 255, 255, 255, 255, 255, 'x'}},
                    MalformedCase{"list of 4 Gi members", {12, 255, 255, 255, 255, 255, 0}},
                    MalformedCase{"map without room for its values", {13, 2, 7, 0, 0}},
                    MalformedCase{"doubles without room", {11, 255, 255, 255, 255, 31, 0, 0, 0}},
                    MalformedCase{"fault below a key that is no text", {13, 1, 1, 99}}));

TEST(StandardCodecDepth, EndsAt512InBothDirections) {
  Value nested = Value::List{};
  Bytes message = {12, 0};
  for (int depth = 1; depth < Value::maxDepth; ++depth) {
    nested = Value::List{std::move(nested)};
    message.insert(message.begin(), {12, 1});
  }
  EXPECT_EQ(StandardCodec::encode(nested), message);
  EXPECT_EQ(StandardCodec::decode(message), nested);
  EXPECT_THROW(static_cast<void>(StandardCodec::encode(Value::Map{{"", std::move(nested)}})),
               MalformedMessage);
  message.insert(message.begin(), {13, 1, 7, 0});
  EXPECT_THROW(static_cast<void>(StandardCodec::decode(message)), MalformedMessage);
}

/// Lists within each other, each of which claims all the bytes that are left.
TEST(StandardCodecDepth, MakesNoRoomForMembersTwice) {
  constexpr std::size_t size = 60'000;
  Bytes message;
  for (int depth = 1; depth < Value::maxDepth; ++depth) {
    const std::size_t left = size - message.size() - 4;
    message.insert(
        message.end(),
        {12, 254, static_cast<std::uint8_t>(left), static_cast<std::uint8_t>(left >> 8)});
  }
  message.resize(size);
  rusage before = {};
  rusage after = {};
  ::getrusage(RUSAGE_SELF, &before);
  EXPECT_THROW(static_cast<void>(StandardCodec::decode(message)), MalformedMessage);
  ::getrusage(RUSAGE_SELF, &after);
  constexpr long many = 200'000;  // kilobytes; all of them together would take 1.7 GB
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, many);
}

TEST(MethodCodecTest, WritesACallAsNameAndArguments) {
  const MethodCall call = {"abc", 5.0};
  const Bytes message = joined({7, 3, 'a', 'b', 'c', 6, 0, 0}, five);
  EXPECT_EQ(MethodCodec::encodeCall(call), message);
  EXPECT_EQ(MethodCodec::decodeCall(message), call);
}

TEST(MethodCodecTest, RefusesWhatIsNoCall) {
  for (const Bytes& message : {Bytes{}, Bytes{3, 1, 0, 0, 0, 0}, Bytes{7, 0}, Bytes{7, 0, 0, 0}}) {
    EXPECT_THROW(static_cast<void>(MethodCodec::decodeCall(message)), MalformedMessage);
  }
}

struct ReplyCase {
  const char* label;
  ChannelReply reply;
  Bytes message;
};
void PrintTo(const ReplyCase& c, std::ostream* out) {
  *out << c.label;
}

class ReplyTest : public testing::TestWithParam<ReplyCase> {};

TEST_P(ReplyTest, IsReadBack) {
  EXPECT_EQ(MethodCodec::encodeReply(GetParam().reply), GetParam().message);
  EXPECT_EQ(MethodCodec::decodeReply(GetParam().message), GetParam().reply);
}

INSTANTIATE_TEST_SUITE_P(
    MethodCodec,
    ReplyTest,
    testing::Values(
        ReplyCase{"result", Value(true), {0, 1}},
        ReplyCase{"no result", Value(), {0, 0}},
        ReplyCase{"aligned from the mark on", Value(5.0), joined({0, 6, 0, 0, 0, 0, 0, 0}, five)},
        ReplyCase{"error", ChannelError{"c", "m", {}}, {1, 7, 1, 'c', 7, 1, 'm', 0}},
        ReplyCase{"not implemented", NotImplemented{}, {}}));

TEST(MethodCodecTest, ReadsAnErrorWithoutMessageAndRefusesOtherReplies) {
  EXPECT_EQ(MethodCodec::decodeReply(Bytes{1, 7, 1, 'c', 0, 1}),
            ChannelReply(ChannelError{"c", "", true}));
  for (const Bytes& message : {Bytes{2, 0}, Bytes{0}, Bytes{0, 0, 0}, Bytes{1, 0, 0, 0}}) {
    EXPECT_THROW(static_cast<void>(MethodCodec::decodeReply(message)), MalformedMessage);
  }
}

}  // namespace
}  // namespace tolvane
