#include <cstdlib>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop_host/session.h"
#include "tests/support/eventually.h"

namespace tolvane {
namespace {

using support::eventually;
using support::eventuallyActive;
using support::Host;
using support::output;
using support::Program;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;

/// A tray that starts later than the host, as at login.
class TrayTest : public support::SessionTest {
 protected:
  void SetUp() override {
    SessionTest::SetUp();
    ASSERT_TRUE(eventually([this] { return !item().empty(); }));
  }

  [[nodiscard]] std::string item() const { return support::contentOf(registrations_); }

  [[nodiscard]] std::string call(const std::string& path, const std::string& words) const {
    return output("gdbus call --session -d $(head -1 " + registrations_.string() + ") -o " + path +
                  " -m " + words);
  }

  Host host_;
  std::filesystem::path registrations_ = folder_.write("registrations", "");
  Program watcher_{{"sh",
                    "-c",
                    std::string("exec /usr/bin/python3 ") + STATUS_NOTIFIER_WATCHER + " > " +
                        registrations_.string()}};
};

TEST_F(TrayTest, ALeftClickOpensThePalette) {
  static_cast<void>(call("/StatusNotifierItem", "org.kde.StatusNotifierItem.Activate 10 10"));
  EXPECT_TRUE(eventuallyActive("tolvane"));
}

TEST_F(TrayTest, TheMenuOpensAndQuits) {
  const std::string layout =
      call("/MenuBar", "com.canonical.dbusmenu.GetLayout 0 -- -1 '[\"label\", \"type\"]'");
  EXPECT_THAT(layout, ContainsRegex("Open tolvane.*separator.*Quit tolvane"));
  const auto click = [this, &layout](const std::string& label) {
    const auto before = layout.rfind("(", layout.find(label));
    const std::string id = std::to_string(std::atoi(layout.c_str() + before + 1));
    return call("/MenuBar", "com.canonical.dbusmenu.Event " + id + " clicked '<0>' 0");
  };
  EXPECT_EQ(click("Open tolvane"), "()");
  EXPECT_TRUE(eventuallyActive("tolvane"));
  static_cast<void>(click("Quit tolvane"));
  EXPECT_EQ(host_.wait(), EXIT_SUCCESS);
}

}  // namespace
}  // namespace tolvane
