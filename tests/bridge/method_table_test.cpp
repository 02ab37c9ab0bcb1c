#include "bridge/method_table.h"

#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/bridge_fixture.h"

namespace tolvane {
namespace {

using Calls = std::vector<std::string>;

Value permissions() {
  return Value::Map{
      {"accessibility", false},
      {"inputMonitoring", false},
      {"automation",
       "Requested only when resolving a Finder selection; use Choose Files or drop without it."},
      {"reduceMotion", true},
      {"reduceTransparency", false}};
}

Value settings(const std::string& key = "C") {
  return Value::Map{{"permissions", permissions()},
                    {"shortcutKey", key},
                    {"shortcutStatus", "status of " + key},
                    {"gesture", false},
                    {"gestureStatus", "refused"},
                    {"loginStatus", "not registered"}};
}

struct MethodCase {
  const char* label;
  const char* method;
  Value arguments;
  ChannelReply reply;
  Calls calls;
};
void PrintTo(const MethodCase& c, std::ostream* out) {
  *out << c.method << ", " << c.label;
}

class MethodTest : public support::BridgeFixture, public testing::WithParamInterface<MethodCase> {};

TEST_P(MethodTest, AsksTheDesktopAndAnswersInItsShape) {
  record_.calls.clear();
  EXPECT_EQ(call(GetParam().method, GetParam().arguments), GetParam().reply);
  EXPECT_EQ(record_.calls, GetParam().calls);
}

const Value none;
const Value::List mixed = {"a", "/b", "/c"};
const ChannelReply missingPage = ChannelError{"arguments", "Missing page.", {}};
const ChannelReply missingInputs = ChannelError{"arguments", "Missing conversion inputs.", {}};

INSTANTIATE_TEST_SUITE_P(
    Palette,
    MethodTest,
    testing::Values(
        MethodCase{"bare", "presentation", {}, none, {"present home none 0"}},
        MethodCase{"no map", "presentation", Value::List{1}, none, {"present home none 0"}},
        MethodCase{"full",
                   "presentation",
                   Value::Map{{"stage", "editor"}, {"hasFiles", true}, {"actionCount", 7}},
                   none,
                   {"present editor files 7"}},
        MethodCase{"wrong types",
                   "presentation",
                   Value::Map{{"stage", 1}, {"hasFiles", "true"}, {"actionCount", "7"}},
                   none,
                   {"present home none 0"}},
        MethodCase{"bare", "hide", {}, none, {"hide"}}));

INSTANTIATE_TEST_SUITE_P(
    Settings,
    MethodTest,
    testing::Values(
        MethodCase{"bare", "settings", {}, settings(), {}},
        MethodCase{"bare", "requestFileAnchoring", {}, settings(), {"ask accessibility"}},
        MethodCase{"letter",
                   "setShortcut",
                   Value::Map{{"key", "X"}},
                   Value::Map{{"success", true}, {"settings", settings("X")}},
                   {"register X"}},
        MethodCase{"refused",
                   "setShortcut",
                   Value::Map{{"key", "Q"}},
                   Value::Map{{"success", false}, {"settings", settings("Q")}},
                   {"register Q"}},
        MethodCase{"no text",
                   "setShortcut",
                   Value::Map{{"key", 5}},
                   Value::Map{{"success", true}, {"settings", settings()}},
                   {"register the current key"}},
        MethodCase{"bare", "setGesture", {}, settings(), {"gesture off"}},
        MethodCase{"on", "setLogin", Value::Map{{"enabled", true}}, settings(), {"login on"}},
        MethodCase{
            "no flag", "setLogin", Value::Map{{"enabled", "yes"}}, settings(), {"login off"}},
        MethodCase{"section",
                   "openPermission",
                   Value::Map{{"section", "Automation"}},
                   none,
                   {"permission [Automation]"}},
        MethodCase{"bare", "openPermission", {}, none, {"permission []"}}));

INSTANTIATE_TEST_SUITE_P(
    Results,
    MethodTest,
    testing::Values(
        MethodCase{"mixed", "reveal", Value::Map{{"paths", mixed}}, none, {"reveal /b /c"}},
        MethodCase{"relative", "reveal", Value::Map{{"paths", Value::List{"a"}}}, none, {"reveal"}},
        MethodCase{"mixed", "open", Value::Map{{"paths", mixed}}, none, {"open /b"}},
        MethodCase{"relative", "open", Value::Map{{"paths", Value::List{"a"}}}, none, {}},
        MethodCase{"mixed", "copyPath", Value::Map{{"paths", mixed}}, none, {"copy [a\n/b\n/c]"}},
        MethodCase{
            "no texts", "copyPath", Value::Map{{"paths", Value::List{1}}}, none, {"copy []"}},
        MethodCase{"bare", "copyPath", {}, none, {"copy []"}}));

INSTANTIATE_TEST_SUITE_P(
    Jobs,
    MethodTest,
    testing::Values(
        MethodCase{"nothing runs", "cancelJob", {}, none, {}},
        MethodCase{"no path", "thumbnail", Value::Map{{"index", 0}}, missingPage, {}},
        MethodCase{"no index", "thumbnail", Value::Map{{"path", "/a.pdf"}}, missingPage, {}},
        MethodCase{"fraction",
                   "thumbnail",
                   Value::Map{{"path", "/a.pdf"}, {"index", 0.5}},
                   missingPage,
                   {}},
        MethodCase{"bare", "startJob", {}, missingInputs, {}},
        MethodCase{"no id",
                   "startJob",
                   Value::Map{{"action", "a"}, {"inputs", Value::List{"/a"}}},
                   missingInputs,
                   {}},
        MethodCase{"no action",
                   "startJob",
                   Value::Map{{"id", "1"}, {"inputs", Value::List{"/a"}}},
                   missingInputs,
                   {}},
        MethodCase{"no inputs",
                   "startJob",
                   Value::Map{{"id", "1"}, {"action", "a"}, {"inputs", Value::List{}}},
                   missingInputs,
                   {}},
        MethodCase{"a relative input",
                   "startJob",
                   Value::Map{{"id", "1"}, {"action", "a"}, {"inputs", Value::List{"/a", "b"}}},
                   missingInputs,
                   {}},
        MethodCase{"an input that is no text",
                   "startJob",
                   Value::Map{{"id", "1"}, {"action", "a"}, {"inputs", Value::List{"/a", 2}}},
                   missingInputs,
                   {}}));

INSTANTIATE_TEST_SUITE_P(
    Unknown,
    MethodTest,
    testing::Values(MethodCase{"reserved", "debugWindowInfo", {}, NotImplemented{}, {}},
                    MethodCase{"reserved", "debugSelect", {}, NotImplemented{}, {}},
                    MethodCase{"the host's own", "event", {}, NotImplemented{}, {}},
                    MethodCase{"nameless", "", {}, NotImplemented{}, {}}));

class BridgeTest : public support::BridgeFixture {};

TEST_F(BridgeTest, RegistersTheShortcutAndAnswersReadyWithItsState) {
  EXPECT_EQ(record_.calls, Calls{"register the current key"});
  const Value expected =
      Value::Map{{"version", 1},
                 {"files", Value::List{}},
                 {"message", "Select a file in Finder and use the shortcut, or drop it here."},
                 {"settings", settings()},
                 {"formats", Value::List{}},
                 {"tools", Value::List{}}};
  EXPECT_EQ(call("ready"), ChannelReply(expected));
}

TEST_F(BridgeTest, SendsEventsOnceTheInterfaceIsReady) {
  bridge_->send("lost", {});
  call("ready");
  bridge_->send("kept", {{"type", "other"}, {"version", 9}, {"a", 1}});
  record_.settingsDismissed();
  EXPECT_EQ(events_,
            (std::vector<Value>{Value::Map{{"type", "kept"}, {"version", 1}, {"a", 1}},
                                Value::Map{{"type", "settingsClosed"}, {"version", 1}}}));
}

TEST_F(BridgeTest, TellsOfTheGestureByEventAndReply) {
  call("ready");
  record_.isGestureAllowed = true;
  const ChannelReply reply = call("setGesture", Value::Map{{"enabled", true}});
  const Value& result = std::get<Value>(reply);
  EXPECT_EQ(result["gesture"], Value(true));
  EXPECT_EQ(result["gestureStatus"], Value("running"));
  Value::Map event = *result.map();
  event["type"] = "permissionStateChanged";
  event["version"] = 1;
  EXPECT_EQ(events_, std::vector<Value>{event});
}

TEST_F(BridgeTest, SaysWhyLaunchAtLoginDidNotChange) {
  record_.loginFailure = "Not signed.";
  EXPECT_EQ(call("setLogin", Value::Map{{"enabled", true}}),
            ChannelReply(ChannelError{"login",
                                      "Launch at login could not be changed. Use a signed app "
                                      "installed in Applications. Not signed.",
                                      {}}));
}

TEST_F(BridgeTest, NamesEveryLoginStatus) {
  const std::vector<std::pair<LoginStatus, const char*>> texts = {
      {LoginStatus::notRegistered, "not registered"},
      {LoginStatus::enabled, "enabled"},
      {LoginStatus::requiresApproval, "requires approval in Login Items"},
      {LoginStatus::notFound, "app not installed / registration unavailable"},
      {LoginStatus{99}, "unknown"}};
  for (const auto& [status, text] : texts) {
    record_.loginStatus = status;
    EXPECT_EQ(std::get<Value>(call("settings"))["loginStatus"], Value(text));
  }
}

TEST_F(BridgeTest, AnswersPanelsWhenTheyHaveClosed) {
  std::vector<ChannelReply> replies;
  const auto keep = [&replies](const ChannelReply& reply) { replies.push_back(reply); };
  record_.calls.clear();
  client_.call("chooseFolder", {}, keep);
  EXPECT_EQ(record_.calls, (Calls{"suspend", "folder panel"}));
  EXPECT_TRUE(replies.empty());
  record_.folderClosed("/folder");
  EXPECT_EQ(record_.calls, (Calls{"suspend", "folder panel", "resume", "show"}));

  record_.calls.clear();
  client_.call("chooseFolder", {}, keep);
  record_.folderClosed(std::nullopt);
  client_.call("chooseFiles", {}, keep);
  record_.filesClosed(std::nullopt);
  EXPECT_EQ(record_.calls,
            (Calls{"suspend",
                   "folder panel",
                   "resume",
                   "show",  //
                   "suspend",
                   "files panel",
                   "resume",
                   "show"}));
  EXPECT_EQ(replies, (std::vector<ChannelReply>{Value("/folder"), none, none}));
}

TEST_F(BridgeTest, AnswersNothingOnceItIsGone) {
  bool isAnswered = false;
  const auto note = [&isAnswered](const ChannelReply&) { isAnswered = true; };
  client_.call("chooseFolder", {}, note);
  client_.call("thumbnail", Value::Map{{"path", "/none.pdf"}, {"index", 0}}, note);
  bridge_.reset();
  record_.folderClosed("/folder");
  record_.settingsDismissed();
  client_.call("settings", {}, note);
  loop_.post([this] { loop_.quit(); });
  loop_.run();
  EXPECT_FALSE(isAnswered);
}

TEST(MethodReplyTest, IsGivenOnce) {
  int answers = 0;
  const MethodReply reply([&answers](const Bytes&) { ++answers; });
  reply.success();
  EXPECT_THROW(reply.error("code", "message"), std::logic_error);
  EXPECT_EQ(answers, 1);
}

TEST(MethodChannelTest, AnswersWhatItCannotRead) {
  MessengerPair messengers;
  MethodChannel host(messengers.host(), "name");
  ChannelReply answer;
  const auto keep = [&answer](const ChannelReply& reply) { answer = reply; };
  const MethodChannel client(messengers.interface(), "name");
  client.invoke("nobody listens", {}, keep);
  EXPECT_EQ(answer, ChannelReply(NotImplemented{}));

  Bytes message = {9};
  host.setHandler([](const MethodCall&, const MethodReply& reply) { reply.success(); });
  messengers.interface().send("name", message, [&message](const Bytes& reply) { message = reply; });
  EXPECT_EQ(message, Bytes{});

  messengers.host().setHandler("name", [](BytesView, const auto& reply) { reply(Bytes{7}); });
  client.invoke("garbled", {}, keep);
  EXPECT_EQ(std::get<ChannelError>(answer).code, "malformed");
}

}  // namespace
}  // namespace tolvane
