#include <optional>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "platform/desktop/autostart_entry.h"
#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/file_user_defaults.h"
#include "platform/desktop/user_folders.h"
#include "platform/files/platform_error.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/variable.h"

namespace tolvane {
namespace {

TEST(FileUserDefaults, KeepsTextsForTheNextProcess) {
  const support::TemporaryFolder folder;
  const auto file = folder / "new/tolvane/settings.json";
  FileUserDefaults defaults(file);
  EXPECT_EQ(defaults.text("shortcutKey"), std::nullopt);
  defaults.setText("shortcutKey", "X");
  defaults.setText("other", "a \"b\"\n→");
  defaults.setText("shortcutKey", "K");
  const FileUserDefaults next(file);
  EXPECT_EQ(next.text("shortcutKey"), "K");
  EXPECT_EQ(next.text("other"), "a \"b\"\n→");
  EXPECT_EQ(folder.names().size(), 1U);
}

TEST(FileUserDefaults, TakesADamagedFileAsEmptyAndReplacesIt) {
  const support::TemporaryFolder folder;
  const std::string tooLarge = "{\"shortcutKey\": \"X\"" + std::string(2'000'000, ' ') + "}";
  for (const std::string& damaged : {std::string(),
                                     std::string("{\"a\": "),
                                     std::string("[1]"),
                                     std::string("{\"shortcutKey\": 5}"),
                                     std::string("\xff"),
                                     tooLarge}) {
    const auto file = folder.write("settings.json", damaged);
    FileUserDefaults defaults(file);
    EXPECT_EQ(defaults.text("shortcutKey"), std::nullopt) << damaged.substr(0, 9);
    defaults.setText("shortcutKey", "F");
    EXPECT_EQ(FileUserDefaults(file).text("shortcutKey"), "F");
  }
}

TEST(FileUserDefaults, LeavesAloneWhatSomebodyElsePutThere) {
  const support::TemporaryFolder folder;
  const auto file = folder.write("settings.json", R"({"shortcutKey": "X", "n": 1, "l": [null]})");
  FileUserDefaults defaults(file);
  EXPECT_EQ(defaults.text("shortcutKey"), "X");
  EXPECT_EQ(defaults.text("n"), std::nullopt);
  defaults.setText("other", "a");
  EXPECT_EQ(nlohmann::json::parse(support::contentOf(file)),
            nlohmann::json::parse(R"({"shortcutKey": "X", "n": 1, "l": [null], "other": "a"})"));
}

TEST(FileUserDefaults, KeepsATextForItsProcessWhenItCannotBeStored) {
  const support::TemporaryFolder folder;
  FileUserDefaults defaults(folder.write("file", "") / "settings.json");
  defaults.setText("shortcutKey", "V");
  EXPECT_EQ(defaults.text("shortcutKey"), "V");
  defaults.setText("shortcutKey", "not UTF-8: \xff");
  EXPECT_EQ(defaults.text("shortcutKey"), "not UTF-8: \xff");
}

class AutostartTest : public testing::Test {
 protected:
  AutostartTest() { makeProgram("tolvane-desktop"); }

  std::filesystem::path makeProgram(const std::string& name) const {
    auto program = folder_.write(name, "#!/bin/sh\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return program;
  }

  LoginStatus statusOf(const std::string& content) const {
    return AutostartEntry(folder_.write("a.desktop", content), "/unused").status();
  }

  support::TemporaryFolder folder_;
};

TEST_F(AutostartTest, IsEnabledWhileRegistered) {
  for (const char* name : {"plain", "with space", "a\"b`c$d\\e%f%%g\nh", "é'(&;)|*?#~=[x]"}) {
    AutostartEntry entry(folder_ / "config/autostart/app.desktop", makeProgram(name));
    EXPECT_EQ(entry.status(), LoginStatus::notRegistered);
    entry.registerApplication();
    EXPECT_EQ(entry.status(), LoginStatus::enabled) << name;
    std::filesystem::remove(folder_ / name);
    EXPECT_EQ(entry.status(), LoginStatus::notFound) << name;
    entry.unregisterApplication();
    entry.unregisterApplication();
    EXPECT_EQ(entry.status(), LoginStatus::notRegistered);
  }
}

TEST_F(AutostartTest, WritesAFileThatEveryDesktopReads) {
  const auto file = folder_ / "app.desktop";
  AutostartEntry(file, makeProgram("say \"hi\"")).registerApplication();
  EXPECT_EQ(support::contentOf(file),
            "[Desktop Entry]\nType=Application\nName=tolvane\nExec=\"" + folder_.path().string() +
                "/say \\\\\"hi\\\\\"\"\nTerminal=false\nStartupNotify=false\n");
}

TEST_F(AutostartTest, TellsWhatAFileOfTheUserMeans) {
  const std::string exec = "Exec=" + (folder_ / "tolvane-desktop").string();
  EXPECT_EQ(statusOf("[Desktop Entry]\n" + exec + " --hidden %U\n"), LoginStatus::enabled);
  EXPECT_EQ(statusOf("[Desktop Entry]\r\n Exec = sh\r\nHidden=false"), LoginStatus::enabled);
  EXPECT_EQ(statusOf("[Desktop Entry]\nHidden = true\n" + exec), LoginStatus::requiresApproval);
  EXPECT_EQ(statusOf("[Desktop Entry]\nHidden=true\nExec=/gone"), LoginStatus::requiresApproval);
  EXPECT_EQ(statusOf("[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n" + exec),
            LoginStatus::requiresApproval);
  EXPECT_EQ(statusOf("[Desktop Entry]\nX-MATE-Autostart-enabled=false\n" + exec),
            LoginStatus::requiresApproval);
  EXPECT_EQ(statusOf("[Desktop Entry]\nHidden=true\nHidden=false\n" + exec), LoginStatus::enabled)
      << "of two equal keys the last one counts";
  EXPECT_EQ(statusOf("[Desktop Entry]\n#Hidden=true\n" + exec + "\n[Other]\nHidden=true"),
            LoginStatus::enabled);
  for (const char* text : {"",
                           "[Desktop Entry]\nExec=\n",
                           "[Desktop Entry]\nExec=/gone/tolvane\n",
                           "[Desktop Entry]\nExec=no-such-program-anywhere\n",
                           "[Other]\nExec=sh\n"}) {
    EXPECT_EQ(statusOf(text), LoginStatus::notFound) << text;
  }
}

TEST_F(AutostartTest, IsSwitchedOnAgainByRegistering) {
  const auto file = folder_.write("a.desktop", "[Desktop Entry]\nHidden=true\n");
  AutostartEntry entry(file, folder_ / "tolvane-desktop");
  entry.registerApplication();
  EXPECT_EQ(entry.status(), LoginStatus::enabled);
}

TEST_F(AutostartTest, RefusesInTheSystemsWords) {
  const auto gone = folder_ / "gone";
  AutostartEntry missing(folder_ / "a", gone);
  EXPECT_EQ(support::failureText([&] { missing.registerApplication(); }),
            gone.string() + " is not an installed program.");
  const auto blocked = folder_.write("blocked", "") / "a.desktop";
  AutostartEntry entry(blocked, folder_ / "tolvane-desktop");
  EXPECT_EQ(support::failureText([&] { entry.registerApplication(); }),
            "Could not create " + (folder_ / "blocked").string() + ": Not a directory.");
}

TEST(UserFolders, FollowTheEnvironment) {
  const support::Variable home("HOME", "/home/me");
  const support::Variable configuration("XDG_CONFIG_HOME", "/set");
  EXPECT_EQ(UserFolders::configuration(), "/set");
  for (const char* unusable : {"", "relative", static_cast<const char*>(nullptr)}) {
    configuration.set(unusable);
    EXPECT_EQ(UserFolders::configuration(), "/home/me/.config");
  }
  home.set(nullptr);
  EXPECT_THROW(static_cast<void>(UserFolders::configuration()), PlatformError);
}

}  // namespace
}  // namespace tolvane
