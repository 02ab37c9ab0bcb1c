#include "bridge/json_rpc_host.h"

#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "bridge/unavailable_services.h"
#include "platform/threads/event_loop.h"

namespace tolvane {
namespace {

using Lines = std::vector<std::string>;

/// A host without a desktop, in conversation.
class JsonRpcHostTest : public testing::Test {
 protected:
  JsonRpcHostTest() {
    host_ = std::make_unique<JsonRpcHost>(
        bridge_,
        messengers_.interface(),
        [this](const std::string& line) { lines_.push_back(line); },
        [this] {
          lines_.emplace_back("finished");
          loop_.quit();
        });
  }

  Lines answersTo(const std::string& line) {
    lines_.clear();
    host_->receive(line);
    return lines_;
  }

  EventLoop loop_;
  MessengerPair messengers_;
  Bridge bridge_{messengers_.host(),
                 loop_,
                 unavailableServices(),
                 ConversionEngine([](const ConversionEngine&, const Job& job) {
                   while (true) {
                     job.token.check();
                     std::this_thread::yield();
                   }
                   return std::vector<std::filesystem::path>();
                 })};
  std::unique_ptr<JsonRpcHost> host_;
  Lines lines_;
};

struct LineCase {
  const char* label;
  const char* line;
  Lines answers;
};
void PrintTo(const LineCase& c, std::ostream* out) {
  *out << c.label;
}

class LineTest : public JsonRpcHostTest, public testing::WithParamInterface<LineCase> {};

TEST_P(LineTest, IsAnswered) {
  EXPECT_EQ(answersTo(GetParam().line), GetParam().answers);
}

const Lines parseFault = {
    R"({"error":{"code":-32700,"message":"Parse error"},"id":null,"jsonrpc":"2.0"})"};
const Lines invalid = {
    R"({"error":{"code":-32600,"message":"Invalid Request"},"id":null,"jsonrpc":"2.0"})"};
const Lines invalidOne = {
    R"({"error":{"code":-32600,"message":"Invalid Request"},"id":1,"jsonrpc":"2.0"})"};

const Lines invalidParams = {
    R"({"error":{"code":-32602,"message":"Invalid params"},"id":1,"jsonrpc":"2.0"})"};

INSTANTIATE_TEST_SUITE_P(
    JsonRpcHost,
    LineTest,
    testing::Values(
        LineCase{"method",
                 R"({"jsonrpc":"2.0","id":1,"method":"hide"})",
                 {R"({"id":1,"jsonrpc":"2.0","result":null})"}},
        LineCase{"id that is text, parameters by name",
                 R"({"jsonrpc":"2.0","id":"a","method":"setGesture","params":{"enabled":1}})",
                 {R"({"id":"a","jsonrpc":"2.0","result":{"gesture":false,)"
                  R"("gestureStatus":"Off · keyboard shortcut recommended",)"
                  R"("loginStatus":"app not installed / registration unavailable",)"
                  R"("permissions":{"accessibility":false,"automation":)"
                  R"("Requested only when resolving a Finder selection; )"
                  R"(use Choose Files or drop without it.","inputMonitoring":false,)"
                  R"("reduceMotion":false,"reduceTransparency":false},"shortcutKey":"C",)"
                  R"("shortcutStatus":"Control–Option–C unavailable (95). )"
                  R"(Choose another shortcut; the menu bar still works."}})"}},
        LineCase{"cancelled panel",
                 R"({"jsonrpc":"2.0","id":null,"method":"chooseFolder","params":[]})",
                 {R"({"id":null,"jsonrpc":"2.0","result":null})"}},
        LineCase{"error of the channel",
                 R"({"jsonrpc":"2.0","id":2.5,"method":"startJob","params":{}})",
                 {R"({"error":{"code":-32000,"data":{"code":"arguments","details":null},)"
                  R"("message":"Missing conversion inputs."},"id":2.5,"jsonrpc":"2.0"})"}},
        LineCase{"refused login item",
                 R"({"jsonrpc":"2.0","id":1,"method":"setLogin","params":{"enabled":true}})",
                 {R"({"error":{"code":-32000,"data":{"code":"login","details":null},"message":)"
                  R"("Launch at login could not be changed. Use a signed app installed in )"
                  R"(Applications. Only the desktop application can be launched at login."},)"
                  R"("id":1,"jsonrpc":"2.0"})"}},
        LineCase{"unknown method",
                 R"({"jsonrpc":"2.0","id":1,"method":"host.fly"})",
                 {R"({"error":{"code":-32601,"message":"Method not found"},)"
                  R"("id":1,"jsonrpc":"2.0"})"}},
        LineCase{"selection without paths",
                 R"({"jsonrpc":"2.0","id":1,"method":"host.select","params":{}})",
                 invalidParams},
        LineCase{"selection without parameters",
                 R"({"jsonrpc":"2.0","id":1,"method":"host.select"})",
                 invalidParams},
        LineCase{"selection of one text",
                 R"({"jsonrpc":"2.0","id":1,"method":"host.select","params":{"paths":"/a"}})",
                 invalidParams},
        LineCase{"selection of what is no text",
                 R"({"jsonrpc":"2.0","id":1,"method":"host.select","params":{"paths":["/a",1]}})",
                 invalidParams},
        LineCase{"notified selection without paths",
                 R"({"jsonrpc":"2.0","method":"host.select","params":{}})",
                 {}},
        LineCase{"notification", R"({"jsonrpc":"2.0","method":"hide"})", {}},
        LineCase{"notification of an unknown method", R"({"jsonrpc":"2.0","method":"no"})", {}},
        LineCase{"no JSON", "hide", parseFault},
        LineCase{"nothing", "", parseFault},
        LineCase{"batch", R"([{"jsonrpc":"2.0","id":1,"method":"hide"}])", invalid},
        LineCase{"no object", "1", invalid},
        LineCase{"no version", R"({"id":1,"method":"hide"})", invalidOne},
        LineCase{"other version", R"({"jsonrpc":2.0,"id":1,"method":"hide"})", invalidOne},
        LineCase{"no method", R"({"jsonrpc":"2.0","id":1})", invalidOne},
        LineCase{"method that is no text", R"({"jsonrpc":"2.0","id":1,"method":1})", invalidOne},
        LineCase{"parameters that are neither list nor map",
                 R"({"jsonrpc":"2.0","id":1,"method":"hide","params":"a"})",
                 invalidOne},
        LineCase{"id that is a flag", R"({"jsonrpc":"2.0","id":true,"method":"hide"})", invalid},
        LineCase{"id that is a list", R"({"jsonrpc":"2.0","id":[],"method":"hide"})", invalid}));

TEST_F(JsonRpcHostTest, SaysWhyItRefusesWhatIsTooLarge) {
  const std::pair<std::string, const char*> cases[] = {
      {R"({"jsonrpc":"2.0","id":1,"method":"hide","params":)" + std::string(1'000, '['),
       "The text is nested too deeply."},
      {std::string(20'000'000, ' '), "The text is too long."}};
  for (const auto& [line, sentence] : cases) {
    EXPECT_EQ(answersTo(line),
              Lines{std::string(R"({"error":{"code":-32700,"data":")") + sentence +
                    R"(","message":"Parse error"},"id":null,"jsonrpc":"2.0"})"});
  }
}

TEST_F(JsonRpcHostTest, SaysWhyTheGestureStaysOffAlsoByEvent) {
  answersTo(R"({"jsonrpc":"2.0","method":"ready"})");
  const Lines lines =
      answersTo(R"({"jsonrpc":"2.0","id":1,"method":"setGesture","params":{"enabled":true}})");
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_TRUE(lines[0].starts_with(R"({"jsonrpc":"2.0","method":"event","params":{"gesture":false,)"
                                   R"("gestureStatus":"Event monitoring unavailable. )"
                                   R"(Use the shortcut or menu bar.",)"))
      << lines[0];
}

TEST_F(JsonRpcHostTest, RegistersNoShortcut) {
  const Lines lines =
      answersTo(R"({"jsonrpc":"2.0","id":1,"method":"setShortcut","params":{"key":"Q"}})");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_NE(lines[0].find(R"("shortcutStatus":"Control–Option–C unavailable (95). )"),
            std::string::npos);
  EXPECT_NE(lines[0].find(R"("success":false)"), std::string::npos);
}

constexpr const char* startJob = R"({"jsonrpc":"2.0","id":1,"method":"startJob","params":)"
                                 R"({"id":"j","action":"universal","inputs":["/a"]}})";

TEST_F(JsonRpcHostTest, QuitsAfterTheOutcomeOfTheCancelledJob) {
  answersTo(R"({"jsonrpc":"2.0","method":"ready"})");
  answersTo(startJob);
  EXPECT_EQ(answersTo(R"({"jsonrpc":"2.0","id":9,"method":"host.quit"})"), Lines{});
  EXPECT_EQ(answersTo(R"({"jsonrpc":"2.0","id":10,"method":"hide"})"), Lines{});
  host_->endOfInput();
  loop_.run();
  ASSERT_EQ(lines_.size(), 3U);
  EXPECT_NE(lines_[0].find(R"("status":"cancelled")"), std::string::npos) << lines_[0];
  EXPECT_EQ(lines_[1], R"({"id":9,"jsonrpc":"2.0","result":null})");
  EXPECT_EQ(lines_[2], "finished");
}

TEST_F(JsonRpcHostTest, QuitsAtTheEndOfInputWithoutAReply) {
  answersTo(startJob);
  lines_.clear();
  host_->endOfInput();
  loop_.run();
  EXPECT_EQ(lines_, Lines{"finished"});
}

TEST_F(JsonRpcHostTest, TellsOfTheLastFilesBeforeItQuits) {
  answersTo(R"({"jsonrpc":"2.0","method":"ready"})");
  answersTo(R"({"jsonrpc":"2.0","method":"host.select","params":{"paths":["/none.pdf"]}})");
  EXPECT_EQ(answersTo(R"({"jsonrpc":"2.0","id":9,"method":"host.quit"})"), Lines{});
  loop_.run();
  ASSERT_EQ(lines_.size(), 3U);
  EXPECT_NE(lines_[0].find("1 file(s) unavailable. "), std::string::npos) << lines_[0];
  EXPECT_EQ(lines_[1], R"({"id":9,"jsonrpc":"2.0","result":null})");
  EXPECT_EQ(lines_[2], "finished");
}

TEST_F(JsonRpcHostTest, SaysNothingOnceItIsGone) {
  host_->receive(R"({"jsonrpc":"2.0","id":1,"method":"thumbnail",)"
                 R"("params":{"path":"/none.pdf","index":0}})");
  host_.reset();
  bridge_.whenWorkIsDone([this] { loop_.quit(); });
  loop_.run();
  EXPECT_EQ(lines_, Lines{});
}

}  // namespace
}  // namespace tolvane
